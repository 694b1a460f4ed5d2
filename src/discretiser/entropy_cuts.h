// Supervised discretisation of one continuous attribute: cut points chosen
// by class entropy, stopped by the minimum-description-length rule of Fayyad
// and Irani, and the intervals those cut points make.
//
// Usage, for one attribute with its known values and the class of each case:
//
//   std::vector<std::pair<float, int>> valueClass;  // (value, class index)
//   std::vector<float> sorted;                      // the same values, ascending
//   ...
//   std::vector<double> cuts = EntropyCutPoints(valueClass, numClasses);
//   std::vector<ContValue> intervals = IntervalsFromCuts(sorted, cuts);
//   // intervals spell and name like those of CutIntervals:
//   // IntervalSpellings(intervals), IntervalItemName(v.Low, v.High)
//
// Both functions are pure: they read only their arguments.
#pragma once

#include <utility>
#include <vector>

#include "discretiser/discretise.h"  // ContValue

// The cut points of one attribute, ascending, from the (value, class index)
// pairs of its known values in any order.
//
// The values are split in two at the boundary that leaves the lowest
// weighted class entropy (N1·Ent(S1) + N2·Ent(S2)) / N; the split is kept
// when its gain Ent(S) − that entropy exceeds (log2(N − 1) + Δ) / N, with
//   Δ = log2(3^k − 2) − (k·Ent(S) − k1·Ent(S1) − k2·Ent(S2)),
// k, k1, k2 the numbers of classes present in S, S1, S2; each kept half is
// split again the same way. Entropies are in bits, in double precision.
//
// Boundaries lie between neighbouring distinct values; one between two
// values that both hold only cases of one and the same class is never the
// best and is passed over. Of boundaries with equal entropy the lowest wins,
// so the result depends only on the multiset of pairs, not on their order.
//
// A cut point is the midpoint of its two values rounded once to single
// precision, as the unsupervised cutter places its bounds; should that
// rounding land on the lower value (two neighbouring floats), the cut is the
// upper value, so a value x lies above a cut c exactly when x >= c.
//
// Pairs with a non-finite value or a class outside 0..numClasses-1 are not
// known values and are passed over; -0 counts as 0. No pairs, a single
// distinct value or a single class give no cut. Time: a sort, then one scan
// of each part that is tried, O(n log n + n·depth).
std::vector<double> EntropyCutPoints(const std::vector<std::pair<float, int>>& valueClass,
                                     int numClasses);

// Cut points found in context, as the splits of one decision tree over all
// the attributes. A node (at first all the cases of a known class) is split
// at the boundary, of any attribute, with the largest information gain among
// those leaving at least three of its cases with a known value on either
// side (the gain over those cases, times their share of the node; the first
// attribute of equals). A node of one class or of fewer than six cases is a
// leaf. The grown tree is pruned from the leaves up: a subtree stays only
// when the pessimistic errors of its leaves (PessimisticErrors) are lower,
// by more than 0.1, than those of its node as one leaf. Each attribute's cut
// points are the splits left on it, ascending, without repeats. Unlike
// EntropyCutPoints, which splits an attribute by its own values, this places
// a cut where it separates the classes within a region the other cuts mark
// out (a petal length that parts two species only among narrow petals, say).
//
// columns[a][i] is attribute a's value in case i, NaN when unknown; classes[i]
// is case i's class index, cases of a class outside 0..numClasses-1 take no
// part. A case whose value of the splitting attribute is unknown follows the
// part that holds more of the node's known values (the upper one on equals).
std::vector<std::vector<double>> TreeCutPoints(const std::vector<std::vector<float>>& columns,
                                              const std::vector<int>& classes, int numClasses);

// The intervals that ascending cut points make of an attribute's known
// values (sortedKnownValues, ascending), with the bounds CutIntervals gives:
// the first interval starts at the smallest value, each cut starts the next
// one, and the last ends half an average width W = (largest − smallest) /
// (distinct values − 1) above the largest value, rounded to single precision
// (at the largest value itself when there is one distinct value). A value x
// belongs to interval j when Low_j <= x < High_j; a value at the last High
// (one distinct value, or rounding) belongs to the last interval.
//
// Count is the number of values in the interval and Mean their mean
// (computed in double precision, rounded once); an interval that holds no
// value (possible with cuts found on other data) has the midpoint of its
// bounds as its mean. MergeCost is 0, Prev and Next are null. Cut points at
// or below the smallest value, above the largest, or not above the previous
// cut are passed over. No values give no interval.
std::vector<ContValue> IntervalsFromCuts(const std::vector<float>& sortedKnownValues,
                                         const std::vector<double>& cuts);
