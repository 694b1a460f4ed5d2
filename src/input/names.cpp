// The names file reader: the class list, then one definition per attribute.
#include <cstdio>

#include "base/files.h"
#include "input/readers.h"

namespace {

// Appends a declared attribute (declared index MaxAtt, real index RealAtt).
void OpenAttribute(DataSet& data, const std::string& name) {
  ++data.MaxAtt;
  data.AttName.push_back(name);
  data.SpecialStatus.push_back(0);
  data.AttCode.push_back(nullptr);
  ++data.RealAtt;
  if (data.AttValue.size() <= static_cast<size_t>(data.RealAtt)) {
    data.AttValue.resize(data.RealAtt + 1);
    data.MaxAttVal.resize(data.RealAtt + 1, 0);
  }
  data.AttValue[data.RealAtt].clear();
  data.MaxAttVal[data.RealAtt] = 0;
}

// Drops the attribute just opened from the real attributes (ignored or
// continuous-without-column).
void DropRealAttribute(DataSet& data) {
  data.AttValue[data.RealAtt].clear();
  data.MaxAttVal[data.RealAtt] = 0;
  --data.RealAtt;
}

}  // namespace

Status GetNames(DataSet& data, const std::string& stem, InputErrors& errors, bool acceptContinuous) {
  data.FileName = stem;
  const std::string fileName = stem + ".names";
  std::FILE* f = XFopen(fileName, "r");
  if (!f) return Error(errors, 0, fileName, "");
  FileCloser closer{f};
  NameReader in{f, 0};

  std::string name;
  data.ClassName.clear();
  // The class list: names as long as each ends with a comma.
  do {
    if (!ReadName(in, name)) break;
    data.ClassName.push_back(name);
  } while (in.Delimiter == ',');
  if (data.ClassName.empty())
    return Status(StatusKind::InputError, 1, "\nERROR:  " + fileName + " declares no class\n");
  data.MaxItem = 0;

  data.Item_Id_Ceiling = 50;
  data.ItemRecord.clear();
  data.ItemRecord.resize(data.Item_Id_Ceiling);
  data.Attribute.assign(data.Item_Id_Ceiling, 0);
  data.MaxAtt = -1;
  data.RealAtt = -1;
  data.ItemRecord[0] = AddItemRecord("?", "unknown attribute");

  while (ReadName(in, name)) {
    const std::string attName = name;
    if (in.Delimiter != ':') RETURN_IF_FAILED(Error(errors, 1, attName, ""));
    OpenAttribute(data, attName);

    std::string value;
    if (!ReadName(in, value)) {
      // End of file where the first value was expected: the attribute ends
      // without values.
      RETURN_IF_FAILED(Error(errors, 2, attName, ""));
      continue;
    }
    if (value == "continuous") {
      data.SpecialStatus[data.MaxAtt] = 3;
      if (!acceptContinuous)
        return Status(StatusKind::Unsupported, 0, "\n I do not process continuous attribute, discretize it first \n");
      continue;  // a column of its own; its items come from the discretiser
    }
    if (value.compare(0, 8, "discrete") == 0) {
      data.SpecialStatus[data.MaxAtt] = 2;
      return Status(StatusKind::Unsupported, 0, "I find the discrete value in " + stem + ".naame\n");
    }
    if (value == "ignore") {
      data.SpecialStatus[data.MaxAtt] = 1;
      DropRealAttribute(data);
      continue;
    }
    AddItem(data, data.MaxAtt, data.RealAtt, value);
    while (in.Delimiter == ',') {
      if (!ReadName(in, value)) {
        RETURN_IF_FAILED(Error(errors, 2, attName, ""));
        break;
      }
      AddItem(data, data.MaxAtt, data.RealAtt, value);
    }
  }

  // The class attribute, last, holding the class values.
  OpenAttribute(data, "Class");
  for (const std::string& cls : data.ClassName) AddItem(data, data.MaxAtt, data.RealAtt, cls);

  data.MaxClass = static_cast<int>(data.ClassName.size());
  ++data.MaxAtt;
  ++data.RealAtt;
  data.AttValue.resize(data.RealAtt);
  data.MaxAttVal.resize(data.RealAtt);
  return CheckItemLimit(data, fileName);
}

Status CheckItemLimit(const DataSet& data, const std::string& source) {
  if (data.MaxItem <= MaxCodableItem) return Status();
  return Status(StatusKind::InputError, 1,
                "\nERROR:  " + source + " declares " + std::to_string(data.MaxItem) + " items; at most " +
                    std::to_string(MaxCodableItem) + " can be coded\n");
}
