#include "show/html.h"

#include <map>

#include "show/formats.h"

namespace show {

std::string HtmlEscape(const std::string& text) {
  std::string out;
  for (char ch : text) {
    switch (ch) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      case '\'': out += "&#39;"; break;
      default: out += ch;
    }
  }
  return out;
}

namespace {

// A number of the file without the zeros that end its six decimals, which
// the page does not need ("0.800000" is 0.8).
void AppendTrimmed(std::string& out, double value) {
  std::string text = Fixed(value);
  while (!text.empty() && text.back() == '0') text.pop_back();
  if (!text.empty() && text.back() == '.') text.pop_back();
  out += text == "-0" ? "0" : text;
}

}  // namespace

std::string ReportData(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming) {
  // Every item once, in order of first appearance; the rules refer to them
  // by number. The rules go column by column, one array per field, which
  // the page reads into flat arrays: a million rules stay small there.
  std::map<std::string, size_t> numbers;
  std::string items;
  const auto number = [&](const Item& item) {
    const std::string spelling = naming.Spell(item);
    auto found = numbers.find(spelling);
    if (found == numbers.end()) {
      found = numbers.emplace(spelling, numbers.size()).first;
      items += (items.empty() ? "" : ",") + JsonString(spelling, true);
    }
    return std::to_string(found->second);
  };
  enum { kIndex, kA, kB, kC, kD, kConfidence, kChi, kLift, kLeverage, kTrivial, kTarget, kItems, kEnds, kFields };
  static const char* const kNames[kFields] = {"index",    "a",       "b",      "c",     "d",     "confidence", "chi",
                                               "lift",     "leverage", "trivial", "target", "items", "ends"};
  std::string columns[kFields];
  size_t itemCount = 0;
  for (const Rule* r : rules) {
    if (!columns[kIndex].empty())
      for (int field = 0; field < kFields; ++field)
        if (field != kItems) columns[field] += ',';
    columns[kIndex] += std::to_string(r->index);
    columns[kA] += std::to_string(r->a);
    columns[kB] += std::to_string(r->b);
    columns[kC] += std::to_string(r->c);
    columns[kD] += std::to_string(r->d);
    AppendTrimmed(columns[kConfidence], r->confidence);
    AppendTrimmed(columns[kChi], r->chi);
    AppendTrimmed(columns[kLift], r->lift);
    AppendTrimmed(columns[kLeverage], r->leverage);
    columns[kTrivial] += r->Trivial() ? '1' : '0';
    columns[kTarget] += number(r->target);
    for (const Item& item : r->antecedent) {
      if (itemCount++ > 0) columns[kItems] += ',';
      columns[kItems] += number(item);
    }
    columns[kEnds] += std::to_string(itemCount);
  }
  std::string out = "{\"file\":" + JsonString(file.path, true) + ",\"cases\":" + std::to_string(file.Cases()) +
                    ",\"total\":" + std::to_string(file.rules.size()) + ",\"confidence\":" + Fixed(file.confidence) +
                    ",\"support\":" + Fixed(file.support) + ",\n\"items\":[" + items + "],\n\"rules\":{";
  for (int field = 0; field < kFields; ++field)
    out += std::string(field ? ",\n\"" : "\"") + kNames[field] + "\":[" + columns[field] + "]";
  return out + "}}";
}

namespace {

const char kStyle[] = R"CSS(
body { font: 14px/1.4 system-ui, sans-serif; margin: 1.5em; color: #222; }
h1 { font-size: 1.3em; margin: 0 0 .2em; }
h2 { font-size: 1.1em; margin: 1.2em 0 .4em; }
.summary, .note { color: #555; }
.filters { display: flex; flex-wrap: wrap; gap: 1em; align-items: center; margin: .8em 0; }
.filters input[type=text] { width: 22em; }
.filters input[type=number] { width: 6em; }
.plots { display: flex; flex-wrap: wrap; gap: 2em; align-items: flex-start; }
table { border-collapse: collapse; margin-top: .5em; }
th, td { padding: .15em .6em; border-bottom: 1px solid #ddd; }
th { cursor: pointer; background: #f3f3f3; user-select: none; white-space: nowrap; }
th.sorted-desc::after { content: " \25BC"; }
th.sorted-asc::after { content: " \25B2"; }
td.num { text-align: right; font-variant-numeric: tabular-nums; }
tr.trivial td { color: #999; }
svg text { font-size: 11px; fill: #333; }
svg .axis { stroke: #888; }
circle.point { stroke: #fff; stroke-width: .5; }
circle.cell { stroke: #555; stroke-width: .5; }
rect.bin { shape-rendering: crispEdges; }
)CSS";

const char kScript[] = R"JS(
'use strict';
// The rules stay in the flat arrays of the data block; a rule is its number
// there. Nothing spreads a list into a call's arguments and no object or
// text is made per rule until it is shown, so a million rules open.
const data = JSON.parse(document.getElementById('rule-data').textContent);
const SVG = 'http://www.w3.org/2000/svg';
const PAGE_ROWS = 100, MAX_POINTS = 5000, BINS_X = 56, BINS_Y = 30, MAX_GROUPS = 20, MAX_TARGETS = 20;
const R = data.rules, count = R.index.length;
const cases = new Float64Array(count), support = new Float64Array(count);
let liftLow = Infinity, liftHigh = -Infinity;
for (let i = 0; i < count; ++i) {
  cases[i] = R.a[i] + R.b[i] + R.c[i] + R.d[i];
  support[i] = cases[i] > 0 ? R.a[i] / cases[i] : 0;
  if (R.lift[i] < liftLow) liftLow = R.lift[i];
  if (R.lift[i] > liftHigh) liftHigh = R.lift[i];
}
if (count === 0) { liftLow = 0; liftHigh = 1; }
const lhsTexts = [], ruleTexts = [], searchTexts = [];
const itemsOf = i => R.items.slice(i > 0 ? R.ends[i - 1] : 0, R.ends[i]);
const lhsKey = i => itemsOf(i).join(',');
const lhsText = i => lhsTexts[i] || (lhsTexts[i] = '{' + itemsOf(i).map(k => data.items[k]).join(', ') + '}');
const targetText = i => data.items[R.target[i]];
const ruleText = i => ruleTexts[i] || (ruleTexts[i] = lhsText(i) + ' => {' + targetText(i) + '}');
const searchText = i => searchTexts[i] || (searchTexts[i] = ruleText(i).toLowerCase());
const trivial = i => R.trivial[i] === 1;
function liftColour(lift) {
  const t = liftHigh > liftLow ? (lift - liftLow) / (liftHigh - liftLow) : 0.5;
  return 'hsl(' + Math.round(220 * (1 - t)) + ',70%,' + Math.round(60 - 15 * t) + '%)';
}
function el(name, attrs, text) {
  const node = name === 'svg' || ['circle', 'line', 'text', 'g', 'rect', 'title', 'defs', 'linearGradient',
                                  'stop'].includes(name)
      ? document.createElementNS(SVG, name) : document.createElement(name);
  for (const key in attrs || {}) node.setAttribute(key, attrs[key]);
  if (text !== undefined) node.textContent = text;
  return node;
}
const fixed = (x, n) => x.toFixed(n);
const columns = [
  {key: 'index', label: '#', num: true, value: i => R.index[i], show: i => String(R.index[i]), first: 'asc'},
  {key: 'text', label: 'rule', value: ruleText, show: i => ruleText(i) + (trivial(i) ? ' *' : ''), first: 'asc'},
  {key: 'support', label: 'support', num: true, value: i => support[i], show: i => fixed(support[i], 4)},
  {key: 'a', label: 'count', num: true, value: i => R.a[i], show: i => R.a[i] + '/' + cases[i]},
  {key: 'confidence', label: 'confidence', num: true, value: i => R.confidence[i],
   show: i => fixed(R.confidence[i], 4)},
  {key: 'lift', label: 'lift', num: true, value: i => R.lift[i], show: i => fixed(R.lift[i], 4)},
  {key: 'leverage', label: 'leverage', num: true, value: i => R.leverage[i], show: i => fixed(R.leverage[i], 4)},
  {key: 'chi', label: 'chi-square', num: true, value: i => R.chi[i], show: i => fixed(R.chi[i], 2)},
];
let sortKey = 'index', sortDir = 'asc', page = 0, list = [];
const headRow = document.getElementById('head');
for (const column of columns) {
  const th = el('th', {'data-key': column.key}, column.label);
  th.addEventListener('click', () => {
    if (sortKey === column.key) sortDir = sortDir === 'asc' ? 'desc' : 'asc';
    else { sortKey = column.key; sortDir = column.first || 'desc'; }
    update();
  });
  headRow.appendChild(th);
}
const inputs = ['filter', 'min-support', 'min-confidence', 'min-lift'].map(id => document.getElementById(id));
inputs.forEach(input => input.addEventListener('input', update));
function bound(input) {
  const value = parseFloat(input.value);
  return isNaN(value) ? -Infinity : value;
}
function chosen() {
  const words = inputs[0].value.toLowerCase().split(/\s+/).filter(w => w);
  const minSupport = bound(inputs[1]), minConfidence = bound(inputs[2]), minLift = bound(inputs[3]);
  const chosenRules = [];
  for (let i = 0; i < count; ++i) {
    if (support[i] >= minSupport && R.confidence[i] >= minConfidence && R.lift[i] >= minLift &&
        (words.length === 0 || words.every(w => searchText(i).includes(w)))) chosenRules.push(i);
  }
  const sign = sortDir === 'asc' ? 1 : -1;
  const value = columns.find(column => column.key === sortKey).value;
  const collator = new Intl.Collator();
  chosenRules.sort((x, y) => {
    if (R.trivial[x] !== R.trivial[y]) return R.trivial[x] - R.trivial[y];  // trivial rules always last
    const p = value(x), q = value(y);
    const order = typeof p === 'string' ? collator.compare(p, q) : p - q;
    return order !== 0 ? sign * order : R.index[x] - R.index[y];
  });
  return chosenRules;
}
function renderTable() {
  for (const th of headRow.children) {
    th.className = th.getAttribute('data-key') === sortKey ? 'sorted-' + sortDir : '';
  }
  const pages = Math.max(1, Math.ceil(list.length / PAGE_ROWS));
  page = Math.min(Math.max(page, 0), pages - 1);
  const first = page * PAGE_ROWS, last = Math.min(list.length, first + PAGE_ROWS);
  const body = document.getElementById('rows');
  body.textContent = '';
  const fragment = document.createDocumentFragment();
  for (let k = first; k < last; ++k) {
    const i = list[k];
    const tr = el('tr', {class: trivial(i) ? 'rule trivial' : 'rule'});
    for (const column of columns) tr.appendChild(el('td', column.num ? {class: 'num'} : {}, column.show(i)));
    fragment.appendChild(tr);
  }
  body.appendChild(fragment);
  document.getElementById('shown').textContent = list.length + ' of ' + count + ' rules pass the filters' +
      (pages > 1 ? '; rules ' + (first + 1) + ' to ' + last + ' shown (page ' + (page + 1) + ' of ' + pages + ').'
                 : '.');
  document.getElementById('pager').hidden = pages <= 1;
  document.getElementById('previous').disabled = page === 0;
  document.getElementById('next').disabled = page === pages - 1;
  let anyTrivial = false;
  for (let k = list.length - 1; k >= 0 && !anyTrivial; --k) anyTrivial = trivial(list[k]);  // trivial ones last
  document.getElementById('trivial-note').hidden = !anyTrivial;
}
function axisTicks(svg, low, high, place, horizontal, at) {
  // Five labelled ticks along an axis; at is the axis's other coordinate.
  for (let i = 0; i <= 4; ++i) {
    const value = low + (high - low) * i / 4, label = value.toFixed(high - low < 0.05 ? 3 : 2);
    svg.appendChild(horizontal ? el('text', {x: place(value), y: at + 16, 'text-anchor': 'middle'}, label)
                               : el('text', {x: at - 6, y: place(value) + 4, 'text-anchor': 'end'}, label));
  }
}
function legend(svg, x, y, low, high, label, colour, digits = 2) {
  const defs = el('defs');
  const gradient = el('linearGradient', {id: 'scale-' + label + '-' + x});
  for (let i = 0; i <= 10; ++i) {
    gradient.appendChild(el('stop', {offset: (i * 10) + '%', 'stop-color': colour(low + (high - low) * i / 10)}));
  }
  defs.appendChild(gradient);
  svg.appendChild(defs);
  svg.appendChild(el('rect', {x: x, y: y, width: 120, height: 10, fill: 'url(#scale-' + label + '-' + x + ')'}));
  svg.appendChild(el('text', {x: x - 4, y: y + 9, 'text-anchor': 'end'}, label + ' ' + fixed(low, digits)));
  svg.appendChild(el('text', {x: x + 124, y: y + 9}, fixed(high, digits)));
}
const liftLegend = (svg, x, y) => legend(svg, x, y, liftLow, liftHigh, 'lift', liftColour);
function renderScatter() {
  const holder = document.getElementById('scatter');
  holder.textContent = '';
  const width = 560, height = 340, left = 50, right = 20, top = 30, bottom = 40;
  const svg = el('svg', {width: width, height: height, viewBox: '0 0 ' + width + ' ' + height,
                         class: 'scatter', role: 'img'});
  let supportHigh = 1e-9, confidenceLow = 1;
  for (const i of list) {
    if (support[i] > supportHigh) supportHigh = support[i];
    if (R.confidence[i] < confidenceLow) confidenceLow = R.confidence[i];
  }
  const cLow = Math.max(0, Math.floor(confidenceLow * 20) / 20 - 0.05);
  const plotWidth = width - left - right, plotHeight = height - top - bottom;
  const px = s => left + plotWidth * s / supportHigh;
  const py = c => height - bottom - plotHeight * (c - cLow) / (1 - cLow || 1);
  svg.appendChild(el('line', {x1: left, y1: height - bottom, x2: width - right, y2: height - bottom, class: 'axis'}));
  svg.appendChild(el('line', {x1: left, y1: top, x2: left, y2: height - bottom, class: 'axis'}));
  axisTicks(svg, 0, supportHigh, px, true, height - bottom);
  axisTicks(svg, cLow, 1, py, false, left);
  svg.appendChild(el('text', {x: (left + width - right) / 2, y: height - 6, 'text-anchor': 'middle'}, 'support'));
  svg.appendChild(el('text', {x: 12, y: top - 12}, 'confidence'));
  const note = document.getElementById('scatter-note');
  if (list.length <= MAX_POINTS) {
    liftLegend(svg, width - right - 150, 8);
    for (const i of list) {
      const dot = el('circle', {class: 'point', cx: fixed(px(support[i]), 1), cy: fixed(py(R.confidence[i]), 1),
                                r: 4, fill: liftColour(R.lift[i])});
      dot.appendChild(el('title', {}, ruleText(i) + '\nsupport ' + fixed(support[i], 4) + ', confidence ' +
                                      fixed(R.confidence[i], 4) + ', lift ' + fixed(R.lift[i], 4)));
      svg.appendChild(dot);
    }
    note.textContent = '';
  } else {
    // Too many points to draw one by one: the plane is cut into cells and
    // each cell holding rules is shaded by how many it holds.
    const bins = new Uint32Array(BINS_X * BINS_Y);
    const column = s => Math.min(BINS_X - 1, Math.floor(BINS_X * s / supportHigh));
    const row = c => Math.min(BINS_Y - 1, Math.max(0, Math.floor(BINS_Y * (c - cLow) / (1 - cLow || 1))));
    let most = 0;
    for (const i of list) {
      const cell = row(R.confidence[i]) * BINS_X + column(support[i]);
      if (++bins[cell] > most) most = bins[cell];
    }
    const shade = n => 'hsl(220,70%,' + Math.round(92 - 62 * Math.log(n) / Math.log(Math.max(2, most))) + '%)';
    const cellWidth = plotWidth / BINS_X, cellHeight = plotHeight / BINS_Y;
    for (let y = 0; y < BINS_Y; ++y) for (let x = 0; x < BINS_X; ++x) {
      const n = bins[y * BINS_X + x];
      if (n === 0) continue;
      const rect = el('rect', {class: 'bin', x: fixed(left + x * cellWidth, 2),
                               y: fixed(height - bottom - (y + 1) * cellHeight, 2), width: fixed(cellWidth, 2),
                               height: fixed(cellHeight, 2), fill: shade(n)});
      rect.appendChild(el('title', {}, n + (n === 1 ? ' rule' : ' rules')));
      svg.appendChild(rect);
    }
    legend(svg, width - right - 150, 8, 1, most, 'rules', n => shade(Math.max(1, n)), 0);
    note.textContent = 'Density: the ' + list.length + ' rules that pass the filters, too many to draw one by ' +
        'one, counted in a grid of ' + BINS_X + ' by ' + BINS_Y + ' cells; the darker a cell, the more rules.';
  }
  holder.appendChild(svg);
}
function renderMatrix() {
  const holder = document.getElementById('matrix');
  holder.textContent = '';
  // Rules grouped by antecedent; the groups with most rules (then highest
  // lift) are the rows, the targets they lead to most often the columns.
  // Only a count and the highest lift are kept per group.
  const groups = new Map();
  let supportHigh = 1e-9;
  for (const i of list) {
    const key = lhsKey(i);
    const group = groups.get(key);
    if (group) { ++group.count; if (R.lift[i] > group.lift) group.lift = R.lift[i]; }
    else groups.set(key, {key: key, first: i, count: 1, lift: R.lift[i], rules: []});
    if (support[i] > supportHigh) supportHigh = support[i];
  }
  const rows = [];
  for (const group of groups.values()) {
    // The MAX_GROUPS largest so far, in order, without sorting every group.
    if (rows.length === MAX_GROUPS) {
      const last = rows[MAX_GROUPS - 1];
      if (group.count < last.count || (group.count === last.count && group.lift <= last.lift)) continue;
      rows.pop();
    }
    let at = rows.length;
    while (at > 0 && (rows[at - 1].count < group.count ||
                      (rows[at - 1].count === group.count && rows[at - 1].lift < group.lift))) --at;
    rows.splice(at, 0, group);
  }
  const chosenGroups = new Map(rows.map(group => [group.key, group]));
  for (const i of list) {
    const group = chosenGroups.get(lhsKey(i));
    if (group) group.rules.push(i);
  }
  const targetCount = new Map();
  for (const group of rows) for (const i of group.rules) {
    targetCount.set(R.target[i], (targetCount.get(R.target[i]) || 0) + 1);
  }
  const targets = Array.from(targetCount.keys()).sort((x, y) => targetCount.get(y) - targetCount.get(x))
      .slice(0, MAX_TARGETS);
  const cut = text => text.length > 42 ? text.slice(0, 40) + '...' : text;
  let lhsWidth = 4, targetWidth = 4;
  for (const group of rows) lhsWidth = Math.max(lhsWidth, cut(lhsText(group.first)).length);
  for (const t of targets) targetWidth = Math.max(targetWidth, cut(data.items[t]).length);
  const cell = 30, labelWidth = 8 + 6.5 * lhsWidth, top = 8 + 5 * targetWidth, legendHeight = 30;
  const width = labelWidth + cell * targets.length + 160, height = top + cell * rows.length + legendHeight;
  const svg = el('svg', {width: width, height: height, viewBox: '0 0 ' + width + ' ' + height,
                         class: 'matrix', role: 'img'});
  targets.forEach((target, j) => {
    const x = labelWidth + cell * j + cell / 2;
    const label = el('text', {x: x, y: top - 6, transform: 'rotate(-40 ' + x + ' ' + (top - 6) + ')'},
                     cut(data.items[target]));
    label.appendChild(el('title', {}, data.items[target]));
    svg.appendChild(label);
  });
  rows.forEach((group, row) => {
    const y = top + cell * row + cell / 2;
    const lhs = lhsText(group.first);
    const label = el('text', {x: labelWidth - 8, y: y + 4, 'text-anchor': 'end'}, cut(lhs));
    label.appendChild(el('title', {}, lhs + ' (' + group.count + ' rules)'));
    svg.appendChild(label);
    svg.appendChild(el('line', {x1: labelWidth, y1: y, x2: labelWidth + cell * targets.length, y2: y,
                                stroke: '#eee'}));
    const drawn = new Set();  // one circle per cell: the first rule of the table's order
    for (const i of group.rules) {
      const j = targets.indexOf(R.target[i]);
      if (j < 0 || drawn.has(j)) continue;
      drawn.add(j);
      const dot = el('circle', {class: 'cell', cx: labelWidth + cell * j + cell / 2, cy: y,
                                r: fixed(3 + 10 * Math.sqrt(support[i] / supportHigh), 1),
                                fill: liftColour(R.lift[i])});
      dot.appendChild(el('title', {}, ruleText(i) + '\nsupport ' + fixed(support[i], 4) + ', lift ' +
                                      fixed(R.lift[i], 4)));
      svg.appendChild(dot);
    }
  });
  liftLegend(svg, labelWidth + 40, height - 18);
  holder.appendChild(svg);
  document.getElementById('matrix-note').textContent = groups.size > MAX_GROUPS
      ? 'The ' + MAX_GROUPS + ' of ' + groups.size + ' antecedents with most rules.' : '';
}
function update() {
  list = chosen();
  page = 0;
  renderTable();
  renderScatter();
  renderMatrix();
}
document.getElementById('previous').addEventListener('click', () => { --page; renderTable(); });
document.getElementById('next').addEventListener('click', () => { ++page; renderTable(); });
// The address may set the first view: #sort=lift&dir=asc&filter=rainy&min-lift=2&page=3
const params = new URLSearchParams(location.hash.slice(1));
inputs.forEach(input => { if (params.has(input.id)) input.value = params.get(input.id); });
if (columns.some(column => column.key === params.get('sort'))) {
  sortKey = params.get('sort');
  sortDir = params.get('dir') === 'asc' ? 'asc' : 'desc';
}
document.getElementById('summary').textContent = data.file + ': ' + data.cases + ' cases, ' + data.total +
    ' rules in the file (confidence ' + data.confidence + ', support ' + data.support + '), ' + count +
    ' on this page.';
update();
if (params.has('page')) { page = (parseInt(params.get('page'), 10) || 1) - 1; renderTable(); }
)JS";

}  // namespace

std::string HtmlReport(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming) {
  std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Rules of " +
                     HtmlEscape(file.path) + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n";
  page += "<h1>Rules of " + HtmlEscape(file.path) + "</h1>\n<p class=\"summary\" id=\"summary\"></p>\n";
  page += R"(<div class="filters">
<label>Filter <input type="text" id="filter" placeholder="words of the rule, e.g. outlook=sunny"></label>
<label>min support <input type="number" id="min-support" min="0" max="1" step="0.01"></label>
<label>min confidence <input type="number" id="min-confidence" min="0" max="1" step="0.01"></label>
<label>min lift <input type="number" id="min-lift" min="0" step="0.1"></label>
</div>
<div class="plots">
<div><h2>Support and confidence, coloured by lift</h2><div id="scatter"></div><p class="note" id="scatter-note"></p></div>
<div><h2>Antecedents and targets: size support, colour lift</h2><div id="matrix"></div><p class="note" id="matrix-note"></p></div>
</div>
<h2>Rules</h2>
<p class="note" id="shown"></p>
<p class="pager" id="pager" hidden><button type="button" id="previous">&lsaquo; previous</button> <button type="button" id="next">next &rsaquo;</button></p>
<table id="rules"><thead><tr id="head"></tr></thead><tbody id="rows"></tbody></table>
<p class="note" id="trivial-note" hidden>* trivial: the target or the antecedent holds in every case (lift 1, chi-square undefined and written 10000); always listed after the other rules.</p>
<p class="note">Click a column name to sort by it, again to reverse. The address can set the first view, e.g. <code>#sort=lift&amp;filter=rainy&amp;min-confidence=0.9&amp;page=2</code>.</p>
)";
  page += "<script type=\"application/json\" id=\"rule-data\">" + ReportData(file, rules, naming) + "</script>\n";
  page += std::string("<script>") + kScript + "</script>\n</body>\n</html>\n";
  return page;
}

}  // namespace show
