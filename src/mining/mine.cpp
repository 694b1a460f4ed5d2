// The layer loop of a mining run.
#include "mining/mining.h"

void MineLayers(MinedRules& run, const DataSet& data, const MiningOptions& options, std::FILE* out,
                const LayerReport& report) {
  TreeNode* root = run.Tree.NewRoot();
  InitialCount(run.Counts, data);
  Counting(run.Counts, data);
  InitRuleSet(run.Rules);
  InitWholeTree(run.Tree, root, run.Counts, data, run.GMinSup, out);

  SelectionSettings settings;
  settings.GMinSup = run.GMinSup;
  settings.MinConf = options.MinConf;
  settings.IMP = options.IMP;
  settings.Ass = options.Ass;
  settings.Dump = DebugDump{options.Debug, out};
  // The class items are the last MaxClass item codes.
  const int classTargetsFrom = options.ClassTargetsOnly ? data.MaxItem - data.MaxClass + 1 : 0;
  settings.ClassTargetsFrom = classTargetsFrom;

  RuleSelectANdPruning(run.Tree, root, 2, settings, run.Counts, run.Rules);
  if (classTargetsFrom > 0) PruneForClassTargets(run.Tree, 2, classTargetsFrom);
  if (report) report(2, run);
  for (int layer = 3;; ++layer) {
    if (CandidateGen(run.Tree, root, layer, settings.Dump, classTargetsFrom) == 0) break;
    Verification(root, layer, data);
    RuleSelectANdPruning(run.Tree, root, layer, settings, run.Counts, run.Rules);
    if (classTargetsFrom > 0) PruneForClassTargets(run.Tree, layer, classTargetsFrom);
    if (report) report(layer, run);
    if (run.Tree.TreeSize > 10000000) break;
    if (layer + 1 > options.MaxLayer) break;
  }
}
