// The layer loop of a mining run.
#include "mining/mining.h"

void MineLayers(MinedRules& run, const DataSet& data, const MiningOptions& options, std::FILE* out,
                const LayerReport& report) {
  const int threads = options.Threads > 1 ? options.Threads : 1;
  TreeNode* root = run.Tree.NewRoot();
  InitialCount(run.Counts, data);
  Counting(run.Counts, data, run.GMinSup, threads, options.ThreadWork);
  InitRuleSet(run.Rules);
  InitWholeTree(run.Tree, root, run.Counts, data, run.GMinSup, out);
  // Layers 1 and 2 are built: only an analysis still needs the pair counts.
  if (!options.KeepPairCounts) FreeCount(run.Counts);

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

  // From layer 3 on: when the row sets of the second-layer items over all the
  // cases fit the budget, each candidate is counted as it is made; otherwise
  // the candidates are made, then counted block by block.
  CountingSettings counting;
  counting.Threads = threads;
  counting.BlockRows = options.CountBlockRows;
  counting.ThreadWork = options.ThreadWork;
  RowSets wholeRows;
  CandidateCounting counted;
  bool countAsMade = false;
  for (int layer = 3;; ++layer) {
    if (layer == 3 && options.CountBlockRows <= 0) {
      const std::vector<int> items = RowSets::SecondLayerItems(root);
      if (RowSets::Bytes(items.size(), static_cast<size_t>(data.MaxData)) <= counting.WholeBudget) {
        wholeRows.Build(items, data, 0, data.MaxData, threads, options.ThreadWork);
        counted = CandidateCounting{&wholeRows, run.GMinSup, threads, options.ThreadWork};
        countAsMade = true;
      }
    }
    if (countAsMade) {
      if (CandidateGen(run.Tree, root, layer, settings.Dump, classTargetsFrom, &counted) == 0) break;
    } else {
      if (CandidateGen(run.Tree, root, layer, settings.Dump, classTargetsFrom) == 0) break;
      Verification(root, layer, data, counting);
    }
    RuleSelectANdPruning(run.Tree, root, layer, settings, run.Counts, run.Rules);
    if (classTargetsFrom > 0) PruneForClassTargets(run.Tree, layer, classTargetsFrom);
    if (report) report(layer, run);
    if (run.Tree.TreeSize > 10000000) break;
    if (layer + 1 > options.MaxLayer) break;
  }
}
