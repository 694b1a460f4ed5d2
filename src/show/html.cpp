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

std::string ReportData(const RuleFile& file, const std::vector<const Rule*>& rules, const Naming& naming) {
  // Every item once, in order of first appearance; the rules refer to them
  // by number, which keeps a page of many rules small.
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
  std::string list;
  for (const Rule* r : rules) {
    std::string antecedent;
    for (const Item& item : r->antecedent) antecedent += (antecedent.empty() ? "" : ",") + number(item);
    const std::string target = number(r->target);
    list += std::string(list.empty() ? "" : ",\n") + "[" + std::to_string(r->index) + "," + std::to_string(r->a) +
            "," + std::to_string(r->b) + "," + std::to_string(r->c) + "," + std::to_string(r->d) + "," +
            Fixed(r->confidence) + "," + Fixed(r->chi) + "," + Fixed(r->lift) + "," + Fixed(r->leverage) + "," +
            (r->Trivial() ? "1" : "0") + "," + target + ",[" + antecedent + "]]";
  }
  return "{\"file\":" + JsonString(file.path, true) + ",\"cases\":" + std::to_string(file.Cases()) +
         ",\"total\":" + std::to_string(file.rules.size()) + ",\"confidence\":" + Fixed(file.confidence) +
         ",\"support\":" + Fixed(file.support) + ",\n\"items\":[" + items + "],\n\"rules\":[\n" + list + "]}";
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
)CSS";

const char kScript[] = R"JS(
'use strict';
const data = JSON.parse(document.getElementById('rule-data').textContent);
const SVG = 'http://www.w3.org/2000/svg';
const MAX_ROWS = 2000, MAX_POINTS = 5000, MAX_GROUPS = 20, MAX_TARGETS = 20;
const rules = data.rules.map(r => {
  const rule = {index: r[0], a: r[1], b: r[2], c: r[3], d: r[4], confidence: r[5], chi: r[6], lift: r[7],
                leverage: r[8], trivial: r[9] === 1, target: data.items[r[10]],
                antecedent: r[11].map(i => data.items[i])};
  rule.cases = rule.a + rule.b + rule.c + rule.d;
  rule.support = rule.cases > 0 ? rule.a / rule.cases : 0;
  rule.lhs = '{' + rule.antecedent.join(', ') + '}';
  rule.text = rule.lhs + ' => {' + rule.target + '}';
  rule.search = rule.text.toLowerCase();
  return rule;
});
const lifts = rules.map(r => r.lift);
const liftLow = lifts.length ? Math.min(...lifts) : 0, liftHigh = lifts.length ? Math.max(...lifts) : 1;
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
  {key: 'index', label: '#', num: true, show: r => String(r.index), first: 'asc'},
  {key: 'text', label: 'rule', show: r => r.text + (r.trivial ? ' *' : ''), first: 'asc'},
  {key: 'support', label: 'support', num: true, show: r => fixed(r.support, 4)},
  {key: 'a', label: 'count', num: true, show: r => r.a + '/' + r.cases},
  {key: 'confidence', label: 'confidence', num: true, show: r => fixed(r.confidence, 4)},
  {key: 'lift', label: 'lift', num: true, show: r => fixed(r.lift, 4)},
  {key: 'leverage', label: 'leverage', num: true, show: r => fixed(r.leverage, 4)},
  {key: 'chi', label: 'chi-square', num: true, show: r => fixed(r.chi, 2)},
];
let sortKey = 'index', sortDir = 'asc';
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
  const list = rules.filter(r => r.support >= minSupport && r.confidence >= minConfidence && r.lift >= minLift &&
                                 words.every(w => r.search.includes(w)));
  const sign = sortDir === 'asc' ? 1 : -1;
  list.sort((x, y) => {
    if (x.trivial !== y.trivial) return x.trivial ? 1 : -1;  // trivial rules always last
    const p = x[sortKey], q = y[sortKey];
    const order = typeof p === 'string' ? p.localeCompare(q) : p - q;
    return order !== 0 ? sign * order : x.index - y.index;
  });
  return list;
}
function renderTable(list) {
  for (const th of headRow.children) {
    th.className = th.getAttribute('data-key') === sortKey ? 'sorted-' + sortDir : '';
  }
  const body = document.getElementById('rows');
  body.textContent = '';
  const fragment = document.createDocumentFragment();
  for (const rule of list.slice(0, MAX_ROWS)) {
    const tr = el('tr', {class: rule.trivial ? 'rule trivial' : 'rule'});
    for (const column of columns) tr.appendChild(el('td', column.num ? {class: 'num'} : {}, column.show(rule)));
    fragment.appendChild(tr);
  }
  body.appendChild(fragment);
  document.getElementById('shown').textContent = list.length > MAX_ROWS
      ? 'The first ' + MAX_ROWS + ' of ' + list.length + ' rules that pass the filters.'
      : list.length + ' of ' + rules.length + ' rules pass the filters.';
  document.getElementById('trivial-note').hidden = !list.some(r => r.trivial);
}
function axisTicks(svg, low, high, place, horizontal, at) {
  // Five labelled ticks along an axis; at is the axis's other coordinate.
  for (let i = 0; i <= 4; ++i) {
    const value = low + (high - low) * i / 4, label = value.toFixed(high - low < 0.05 ? 3 : 2);
    svg.appendChild(horizontal ? el('text', {x: place(value), y: at + 16, 'text-anchor': 'middle'}, label)
                               : el('text', {x: at - 6, y: place(value) + 4, 'text-anchor': 'end'}, label));
  }
}
function legend(svg, x, y) {
  const defs = el('defs');
  const gradient = el('linearGradient', {id: 'lift-scale-' + x});
  for (let i = 0; i <= 10; ++i) {
    gradient.appendChild(el('stop', {offset: (i * 10) + '%',
                                     'stop-color': liftColour(liftLow + (liftHigh - liftLow) * i / 10)}));
  }
  defs.appendChild(gradient);
  svg.appendChild(defs);
  svg.appendChild(el('rect', {x: x, y: y, width: 120, height: 10, fill: 'url(#lift-scale-' + x + ')'}));
  svg.appendChild(el('text', {x: x - 4, y: y + 9, 'text-anchor': 'end'}, 'lift ' + liftLow.toFixed(2)));
  svg.appendChild(el('text', {x: x + 124, y: y + 9}, liftHigh.toFixed(2)));
}
function renderScatter(list) {
  const holder = document.getElementById('scatter');
  holder.textContent = '';
  const width = 560, height = 340, left = 50, right = 20, top = 30, bottom = 40;
  const svg = el('svg', {width: width, height: height, viewBox: '0 0 ' + width + ' ' + height,
                         class: 'scatter', role: 'img'});
  const points = list.slice(0, MAX_POINTS);
  const supportHigh = Math.max(1e-9, ...points.map(r => r.support));
  const confidenceLow = Math.min(1, ...points.map(r => r.confidence));
  const cLow = Math.max(0, Math.floor(confidenceLow * 20) / 20 - 0.05);
  const px = s => left + (width - left - right) * s / supportHigh;
  const py = c => height - bottom - (height - top - bottom) * (c - cLow) / (1 - cLow || 1);
  svg.appendChild(el('line', {x1: left, y1: height - bottom, x2: width - right, y2: height - bottom, class: 'axis'}));
  svg.appendChild(el('line', {x1: left, y1: top, x2: left, y2: height - bottom, class: 'axis'}));
  axisTicks(svg, 0, supportHigh, px, true, height - bottom);
  axisTicks(svg, cLow, 1, py, false, left);
  svg.appendChild(el('text', {x: (left + width - right) / 2, y: height - 6, 'text-anchor': 'middle'}, 'support'));
  svg.appendChild(el('text', {x: 12, y: top - 12}, 'confidence'));
  legend(svg, width - right - 150, 8);
  for (const rule of points) {
    const dot = el('circle', {class: 'point', cx: px(rule.support).toFixed(1), cy: py(rule.confidence).toFixed(1),
                              r: 4, fill: liftColour(rule.lift)});
    dot.appendChild(el('title', {}, rule.text + '\nsupport ' + fixed(rule.support, 4) + ', confidence ' +
                                    fixed(rule.confidence, 4) + ', lift ' + fixed(rule.lift, 4)));
    svg.appendChild(dot);
  }
  holder.appendChild(svg);
  document.getElementById('scatter-note').textContent = list.length > MAX_POINTS
      ? 'The first ' + MAX_POINTS + ' of ' + list.length + ' rules in the order of the table.' : '';
}
function renderMatrix(list) {
  const holder = document.getElementById('matrix');
  holder.textContent = '';
  // Rules grouped by antecedent; the groups with most rules (then highest
  // lift) are the rows, the targets they lead to most often the columns.
  const groups = new Map();
  for (const rule of list) {
    if (!groups.has(rule.lhs)) groups.set(rule.lhs, {lhs: rule.lhs, rules: [], lift: 0});
    const group = groups.get(rule.lhs);
    group.rules.push(rule);
    group.lift = Math.max(group.lift, rule.lift);
  }
  const rows = [...groups.values()].sort((x, y) => y.rules.length - x.rules.length || y.lift - x.lift)
      .slice(0, MAX_GROUPS);
  const targetCount = new Map();
  for (const group of rows) for (const rule of group.rules) {
    targetCount.set(rule.target, (targetCount.get(rule.target) || 0) + 1);
  }
  const targets = [...targetCount.keys()].sort((x, y) => targetCount.get(y) - targetCount.get(x))
      .slice(0, MAX_TARGETS);
  const cut = text => text.length > 42 ? text.slice(0, 40) + '...' : text;
  const cell = 30, labelWidth = 8 + 6.5 * Math.max(4, ...rows.map(g => cut(g.lhs).length));
  const top = 8 + 5 * Math.max(4, ...targets.map(t => cut(t).length)), legendHeight = 30;
  const width = labelWidth + cell * targets.length + 160, height = top + cell * rows.length + legendHeight;
  const svg = el('svg', {width: width, height: height, viewBox: '0 0 ' + width + ' ' + height,
                         class: 'matrix', role: 'img'});
  const supportHigh = Math.max(1e-9, ...list.map(r => r.support));
  targets.forEach((target, j) => {
    const x = labelWidth + cell * j + cell / 2;
    const label = el('text', {x: x, y: top - 6, transform: 'rotate(-40 ' + x + ' ' + (top - 6) + ')'}, cut(target));
    label.appendChild(el('title', {}, target));
    svg.appendChild(label);
  });
  rows.forEach((group, i) => {
    const y = top + cell * i + cell / 2;
    const label = el('text', {x: labelWidth - 8, y: y + 4, 'text-anchor': 'end'}, cut(group.lhs));
    label.appendChild(el('title', {}, group.lhs + ' (' + group.rules.length + ' rules)'));
    svg.appendChild(label);
    svg.appendChild(el('line', {x1: labelWidth, y1: y, x2: labelWidth + cell * targets.length, y2: y,
                                stroke: '#eee'}));
    for (const rule of group.rules) {
      const j = targets.indexOf(rule.target);
      if (j < 0) continue;
      const dot = el('circle', {class: 'cell', cx: labelWidth + cell * j + cell / 2, cy: y,
                                r: (3 + 10 * Math.sqrt(rule.support / supportHigh)).toFixed(1),
                                fill: liftColour(rule.lift)});
      dot.appendChild(el('title', {}, rule.text + '\nsupport ' + fixed(rule.support, 4) + ', lift ' +
                                      fixed(rule.lift, 4)));
      svg.appendChild(dot);
    }
  });
  legend(svg, labelWidth + 40, height - 18);
  holder.appendChild(svg);
  document.getElementById('matrix-note').textContent = groups.size > MAX_GROUPS
      ? 'The ' + MAX_GROUPS + ' of ' + groups.size + ' antecedents with most rules.' : '';
}
function update() {
  const list = chosen();
  renderTable(list);
  renderScatter(list);
  renderMatrix(list);
}
// The address may set the first view: #sort=lift&dir=asc&filter=rainy&min-lift=2
const params = new URLSearchParams(location.hash.slice(1));
inputs.forEach(input => { if (params.has(input.id)) input.value = params.get(input.id); });
if (columns.some(column => column.key === params.get('sort'))) {
  sortKey = params.get('sort');
  sortDir = params.get('dir') === 'asc' ? 'asc' : 'desc';
}
document.getElementById('summary').textContent = data.file + ': ' + data.cases + ' cases, ' + data.total +
    ' rules in the file (confidence ' + data.confidence + ', support ' + data.support + '), ' + rules.length +
    ' on this page.';
update();
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
<table id="rules"><thead><tr id="head"></tr></thead><tbody id="rows"></tbody></table>
<p class="note" id="trivial-note" hidden>* trivial: the target or the antecedent holds in every case (lift 1, chi-square undefined and written 10000); always listed after the other rules.</p>
<p class="note">Click a column name to sort by it, again to reverse. The address can set the first view, e.g. <code>#sort=lift&amp;filter=rainy&amp;min-confidence=0.9</code>.</p>
)";
  page += "<script type=\"application/json\" id=\"rule-data\">" + ReportData(file, rules, naming) + "</script>\n";
  page += std::string("<script>") + kScript + "</script>\n</body>\n</html>\n";
  return page;
}

}  // namespace show
