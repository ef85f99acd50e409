// SPDX-License-Identifier: MIT
"use strict";

(() => {

const data = JSON.parse(document.getElementById("data").textContent);

// ---- What there is -------------------------------------------------------------------------

// How jobs end: the outcomes, in their order, and after them what compiled with warnings.
const WARNED = data.outcomes.length;
const SIGNS = "·ERNCXTMG?!–w";
const LOOKS = ["good", "bad", "fault", "fault", "fault", "fault", "fault", "fault",
               "skipped", "fault", "fault", "skipped", "warned"];
const LABELS = [...data.outcomes.map(name => name.replaceAll("_", " ")), "compiled with warnings"];
const NO_JOB = -1;

// The members of a result. But for the outcome and the size they are numbers, or arrays of
// numbers, of data.texts, data.diagnostics (text, line, column) and data.table_rows.
const OUTCOME = 0, DETAIL = 1, ERRORS = 2, WARNINGS = 3, TABLE = 4, BINARY_SIZE = 5, PRINTED = 6;

const kindOf = data.results.map(result =>
    result[OUTCOME] === 0 && result[WARNINGS].length > 0 ? WARNED : result[OUTCOME]);
const isFailure = kind => kind !== 0 && kind !== WARNED;

const titleOf = row => [data.sources[row.source], ...row.defines.map(define => "-D " + define),
                        ...row.kernels.map(kernel => "--kernel " + kernel)].join(" ");
const titles = data.rows.map(titleOf);

const coreName = compiler => compiler.core + " " + compiler.revision;
const driverName = compiler => compiler.driver + " " + compiler.api;

// ---- Text, which may hold anything ---------------------------------------------------------

// What would not be seen, or would show other text in another order than it has.
const ODD = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u2069\ufeff\ufff9-\ufffb]/g;
const ODD_IN_LINE = new RegExp(ODD.source.replace("[", "[\\t\\n"), "g");
const codeOf = odd => "U+" + odd.codePointAt(0).toString(16).toUpperCase().padStart(4, "0");
const oneLine = text => text.replace(ODD_IN_LINE, codeOf);

function element(name, attributes = {}, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(attributes))
        made.setAttribute(key, value);
    made.append(...children);
    return made;
}

// The text as nodes, with elements that name the odd characters.
function textNodes(text, odd = ODD) {
    const nodes = [];
    let at = 0;
    for (const match of text.matchAll(odd)) {
        nodes.push(text.slice(at, match.index), element("span", {class: "odd"}, codeOf(match[0])));
        at = match.index + match[0].length;
    }
    nodes.push(text.slice(at));
    return nodes;
}

const lineNodes = text => textNodes(text, ODD_IN_LINE);
const trimmed = text => text.replace(/[\r\n]+$/, "");
const count = (number, noun) => number.toLocaleString("en") + " " + noun + (number === 1 ? "" : "s");

// ---- What is shown -------------------------------------------------------------------------

const get = id => document.getElementById(id);
const controls = {query: get("query"), stage: get("stage"), driver: get("driver"),
                  core: get("core"), failuresFirst: get("failures-first")};
const chosenKinds = new Set();
const scroller = get("scroller"), matrix = get("matrix"), head = get("head"), body = get("body");
const details = get("details");

let columns = []; // numbers of data.columns
let rows = [];    // numbers of data.rows
let passes = [];  // by compiler
let active = {row: 0, column: -1}; // places in rows and columns; -1 is the source's name
let open = null;                   // numbers in data.rows and data.columns, or -1

function textMatcher(query) {
    if (query === "")
        return null;
    const has = text => text.toLowerCase().includes(query);
    const texts = data.texts.map(has);
    const diagnostics = data.diagnostics.map(diagnostic => has(diagnostic[0]));
    return data.results.map(result =>
        texts[result[DETAIL]] || texts[result[PRINTED]] ||
        result[ERRORS].some(number => diagnostics[number]) ||
        result[WARNINGS].some(number => diagnostics[number]));
}

function filter() {
    const {driver, core, stage} = controls;
    passes = data.compilers.map(compiler =>
        (driver.value === "" || driverName(compiler) === driver.value) &&
        (core.value === "" || coreName(compiler) === core.value));
    columns = [...data.columns.keys()].filter(
        column => data.columns[column].some(compiler => passes[compiler]));

    const query = controls.query.value.trim().toLowerCase();
    const resultMatches = textMatcher(query);
    const ofKind = cell => chosenKinds.size === 0 || chosenKinds.has(kindOf[cell]);
    const rowPasses = number => {
        const row = data.rows[number];
        if (stage.value !== "" && row.stage !== stage.value)
            return false;
        const named = query === "" || titles[number].toLowerCase().includes(query);
        return columns.some(column => {
            const cell = row.cells[column];
            return cell !== NO_JOB && ofKind(cell) && (named || resultMatches[cell]);
        });
    };
    rows = [...data.rows.keys()].filter(rowPasses);
    if (controls.failuresFirst.checked) {
        const fails = number => columns.some(column => {
            const cell = data.rows[number].cells[column];
            return cell !== NO_JOB && isFailure(kindOf[cell]);
        });
        const failed = rows.map(fails);
        rows = [...rows.filter((_, i) => failed[i]), ...rows.filter((_, i) => !failed[i])];
    }
    active = {row: 0, column: Math.min(active.column, columns.length - 1)};
    scroller.scrollTop = 0;
    renderHead();
    render(true);
    showStatus();
}

function showStatus() {
    const shown = passes.filter(Boolean).length;
    get("status").textContent =
        (rows.length === data.rows.length ? "" : rows.length.toLocaleString("en") + " of ") +
        count(data.rows.length, "source") + ", " +
        (shown === data.compilers.length ? "" : shown + " of ") +
        count(data.compilers.length, "compiler") +
        (columns.length < shown ? " in " + count(columns.length, "column") : "");
    get("nothing").hidden = rows.length > 0;
    matrix.hidden = rows.length === 0;
}

// ---- The matrix: only the rows in sight are elements ----------------------------------------

const ROW_HEIGHT = 26; // as --row in the style
const BEYOND = 12;     // rows made above and below those in sight
let rendered = null;

function columnTitle(column) {
    return data.columns[column].filter(compiler => passes[compiler]).map(compiler =>
        oneLine(driverName(data.compilers[compiler]) + ": " + coreName(data.compilers[compiler])))
        .join("\n");
}

function renderHead() {
    const cells = [element("th", {class: "corner", scope: "col"}, "Source")];
    for (const column of columns) {
        const members = data.columns[column].filter(compiler => passes[compiler]);
        const first = data.compilers[members[0]];
        const more = members.length > 1 ? " +" + (members.length - 1) : "";
        cells.push(element("th", {class: "column", scope: "col", title: columnTitle(column)},
            element("span", {}, ...lineNodes(coreName(first) + more),
                element("small", {}, ...lineNodes(driverName(first))))));
    }
    head.replaceChildren(element("tr", {"aria-rowindex": 1}, ...cells));
    matrix.setAttribute("aria-rowcount", rows.length + 1);
    matrix.setAttribute("aria-colcount", columns.length + 1);
}

function renderRow(place) {
    const number = rows[place], row = data.rows[number];
    const look = (column, dataColumn) =>
        (open !== null && open.row === number && open.column === dataColumn ? " open" : "") +
        (active.row === place && active.column === column ? " active" : "");
    const header = element("th", {scope: "row", id: `cell-${place}--1`, class: look(-1, -1),
                                  title: oneLine(titles[number])}, ...lineNodes(titles[number]));
    const cells = columns.map((column, i) => {
        const cell = row.cells[column], id = `cell-${place}-${i}`;
        if (cell === NO_JOB)
            return element("td", {id, class: "none" + look(i, column), role: "gridcell",
                                  "aria-label": "not for this compiler"});
        const kind = kindOf[cell];
        const aside = chosenKinds.size > 0 && !chosenKinds.has(kind) ? " aside" : "";
        return element("td", {id, class: LOOKS[kind] + aside + look(i, column), role: "gridcell",
                              title: LABELS[kind], "aria-label": LABELS[kind]}, SIGNS[kind]);
    });
    return element("tr", {"aria-rowindex": place + 2}, header, ...cells);
}

function space(rowCount) {
    const cell = element("td", {colspan: columns.length + 1});
    const row = element("tr", {class: "space", "aria-hidden": "true"}, cell);
    row.style.height = cell.style.height = rowCount * ROW_HEIGHT + "px";
    return row;
}

function render(always = false) {
    const first = Math.max(0, Math.floor(scroller.scrollTop / ROW_HEIGHT) - BEYOND);
    const end = Math.min(rows.length,
        Math.ceil((scroller.scrollTop + scroller.clientHeight) / ROW_HEIGHT) + BEYOND);
    if (!always && rendered !== null && rendered.first === first && rendered.end === end)
        return;
    rendered = {first, end};
    const made = [];
    for (let place = first; place < end; ++place)
        made.push(renderRow(place));
    body.replaceChildren(...(first > 0 ? [space(first)] : []), ...made,
                         ...(end < rows.length ? [space(rows.length - end)] : []));
    matrix.setAttribute("aria-activedescendant", `cell-${active.row}-${active.column}`);
}

function moveTo(row, column) {
    if (rows.length === 0)
        return;
    active = {row: Math.max(0, Math.min(row, rows.length - 1)),
              column: Math.max(-1, Math.min(column, columns.length - 1))};
    const top = active.row * ROW_HEIGHT;
    const inSight = scroller.clientHeight - head.offsetHeight - ROW_HEIGHT;
    if (top < scroller.scrollTop)
        scroller.scrollTop = top;
    else if (top > scroller.scrollTop + inSight)
        scroller.scrollTop = top - inSight;
    render(true);
    if (active.column < 0)
        scroller.scrollLeft = 0;
    else
        get(`cell-${active.row}-${active.column}`).scrollIntoView({block: "nearest", inline: "nearest"});
}

// ---- The details of a cell, or of all cells of a row -----------------------------------------

function driverItems(compilers) {
    const drivers = new Map();
    for (const compiler of compilers.map(number => data.compilers[number])) {
        const name = driverName(compiler);
        drivers.set(name, [...(drivers.get(name) ?? []), coreName(compiler)]);
    }
    return [...drivers].map(([driver, cores]) => element("li", {},
        element("b", {}, ...lineNodes(driver)), ": ", ...lineNodes(cores.join(", "))));
}

const compilerList = compilers => element("ul", {class: "compilers"}, ...driverItems(compilers));
const badge = kind => element("span", {class: "kind " + LOOKS[kind]}, LABELS[kind]);

function statistics(result) {
    return element("table", {class: "statistics"}, ...result[TABLE].map(number => element("tr", {},
        ...data.table_rows[number].map(text => element("td", {}, ...lineNodes(text))))));
}

// What differs between results: how they ended, statistics, what was printed.
function resultBox(number, compilers, alone) {
    const result = data.results[number];
    const box = element("div", {class: "result"}, badge(kindOf[number]));
    const detail = data.texts[result[DETAIL]];
    if (detail !== "")
        box.append(element("p", {}, ...textNodes(detail)));
    box.append(compilerList(compilers));
    if (result[BINARY_SIZE] > 0)
        box.append(element("p", {}, "Binary: " + count(result[BINARY_SIZE], "byte")));
    const printed = trimmed(data.texts[result[PRINTED]]);
    if (printed !== "")
        box.append(element("p", {}, "Printed:"), element("pre", {}, ...textNodes(printed)));
    if (result[TABLE].length > 0)
        box.append(element("details", alone ? {open: ""} : {},
            element("summary", {}, "Statistics"), statistics(result)));
    return box;
}

// Each diagnostic once, with the compilers that gave it.
function gatherNotes(results) {
    const notes = new Map();
    for (const [number, compilers] of results)
        for (const [member, look] of [[ERRORS, "bad"], [WARNINGS, "warned"]])
            for (const diagnostic of new Set(data.results[number][member])) {
                const key = look + diagnostic;
                if (!notes.has(key)) {
                    const [text, line] = data.diagnostics[diagnostic];
                    notes.set(key, {look, text: trimmed(text), line, compilers: []});
                }
                notes.get(key).compilers.push(...compilers);
            }
    return [...notes.values()];
}

function noteElement(note, all, name) {
    const made = element(name, {class: "note " + note.look},
        element("pre", {}, ...textNodes(note.text)));
    if (note.compilers.length < all)
        made.append(element("small", {}, note.compilers.length <= 3
            ? oneLine(note.compilers.map(number => coreName(data.compilers[number])).join(", "))
            : `${note.compilers.length} of ${all} compilers`));
    return made;
}

function noteList(notes, all) {
    return element("ul", {class: "diagnostics"}, ...notes.map(note => {
        const item = noteElement(note, all, "li");
        if (note.target) {
            const button = element("button", {type: "button"}, "line " + note.line);
            button.addEventListener("click", () => {
                note.target.scrollIntoView({block: "center"});
                note.target.focus({preventScroll: true});
            });
            item.prepend(button, " ");
        }
        return item;
    }));
}

// The lines, with the notes behind those that they are about.
function sourceListing(text, notes, all) {
    const LINES_IN_BLOCK = 100; // blocks out of sight cost no layout
    const lines = text.split(/\r\n|\r|\n/);
    if (lines.length > 1 && lines.at(-1) === "")
        lines.pop();
    const notesOfLine = Map.groupBy(notes, note => note.line);
    const listing = element("div", {class: "source", role: "group", "aria-label": "Source"});
    lines.forEach((line, i) => {
        if (i % LINES_IN_BLOCK === 0)
            listing.append(element("div", {class: "lines"}));
        const here = notesOfLine.get(i + 1) ?? [];
        const code = element("div", {class: here.length > 0 ? "code marked" : "code"},
            element("span", {class: "number"}, String(i + 1)),
            element("code", {}, ...textNodes(line)));
        listing.lastChild.append(code);
        for (const note of here) {
            note.target = noteElement(note, all, "div");
            note.target.tabIndex = -1;
            listing.lastChild.append(note.target);
        }
    });
    return listing;
}

function showDetails() {
    const row = data.rows[open.row];
    const shown = open.column < 0 ? columns : [open.column];
    const results = new Map();
    for (const column of shown) {
        const cell = row.cells[column];
        if (cell !== NO_JOB)
            results.set(cell, [...(results.get(cell) ?? []),
                               ...data.columns[column].filter(compiler => passes[compiler])]);
    }
    const all = [...results.values()].flat().length;
    const notes = gatherNotes(results);
    const source = JSON.parse(get("source-" + row.source).textContent);
    const listing = source.text === undefined
        ? element("p", {}, "The source cannot be shown: ", ...textNodes(source.error))
        : sourceListing(source.text, notes, all);
    const numbers = [...results.keys()];
    const boxes = some => some.map(number =>
        resultBox(number, results.get(number), numbers.length === 1));
    const first = numbers.filter(number => numbers.length === 1 || isFailure(kindOf[number]));
    const others = numbers.filter(number => !first.includes(number));
    const box = element("div", {}, element("h2", {}, ...lineNodes(titles[open.row])),
        element("p", {}, ...lineNodes(row.stage)), ...boxes(first));
    if (notes.length > 0)
        box.append(element("h3", {}, "Diagnostics"), noteList(notes, all));
    box.append(element("h3", {}, "Source"), listing);
    if (others.length > 0)
        box.append(element("h3", {}, "Compiled"), ...boxes(others));
    details.replaceChildren(box);
    details.scrollTop = 0;
}

function openCell(row, column) {
    moveTo(row, column);
    const dataRow = rows[active.row], dataColumn = column < 0 ? -1 : columns[column];
    if (dataColumn >= 0 && data.rows[dataRow].cells[dataColumn] === NO_JOB)
        return;
    open = {row: dataRow, column: dataColumn};
    render(true);
    showDetails();
}

const legend = [...details.children];

function showLegend() {
    open = null;
    render(true);
    details.replaceChildren(...legend);
}

// ---- Controls --------------------------------------------------------------------------------

function jobsByKind() {
    const jobs = LABELS.map(() => 0);
    const widths = data.columns.map(members => members.length);
    for (const row of data.rows)
        row.cells.forEach((cell, column) => {
            if (cell !== NO_JOB)
                jobs[kindOf[cell]] += widths[column];
        });
    return jobs;
}

// In the order of the outcomes, but what warns behind what compiled.
const kindOrder = [0, WARNED, ...LABELS.keys()].filter((kind, i, all) => all.indexOf(kind) === i);

function addKindButtons() {
    const jobs = jobsByKind();
    for (const kind of kindOrder.filter(kind => jobs[kind] > 0)) {
        const button = element("button",
            {type: "button", class: "kind " + LOOKS[kind], "aria-pressed": "false"},
            jobs[kind].toLocaleString("en") + " " + LABELS[kind]);
        button.addEventListener("click", () => {
            if (!chosenKinds.delete(kind))
                chosenKinds.add(kind);
            button.setAttribute("aria-pressed", String(chosenKinds.has(kind)));
            filter();
        });
        get("kinds").append(button);
    }
    return kindOrder.filter(kind => jobs[kind] > 0);
}

function addLegend(kinds) {
    get("legend").append(
        element("h3", {}, "Signs"),
        element("ul", {class: "signs"}, ...kinds.map(kind =>
            element("li", {class: "kind " + LOOKS[kind]},
                element("b", {}, SIGNS[kind]), " " + LABELS[kind]))),
        element("h3", {}, "Columns: compilers with equal results share one"),
        element("ol", {class: "columns"}, ...data.columns.map(members =>
            element("li", {}, compilerList(members)))));
}

function addChoices(select, values) {
    select.append(element("option", {value: ""}, "all"),
        ...[...new Set(values)].map(value => element("option", {value}, ...lineNodes(value))));
}

function reset() {
    for (const select of [controls.stage, controls.driver, controls.core, controls.query])
        select.value = "";
    chosenKinds.clear();
    for (const button of get("kinds").children)
        button.setAttribute("aria-pressed", "false");
    filter();
}

function switchTheme() {
    const themes = ["system", "light", "dark"];
    const root = document.documentElement;
    const next = themes[(themes.indexOf(root.dataset.theme ?? "system") + 1) % themes.length];
    root.dataset.theme = next;
    get("theme").textContent = "Theme: " + next;
}

function placeOf(target) {
    const cell = target.closest("#body [id^=cell-]");
    const place = cell?.id.match(/^cell-(\d+)-(-?\d+)$/);
    return place && {row: Number(place[1]), column: Number(place[2])};
}

const page = () => Math.max(1, Math.floor((scroller.clientHeight - head.offsetHeight) / ROW_HEIGHT) - 1);
const MOVES = {
    ArrowUp: () => [active.row - 1, active.column],
    ArrowDown: () => [active.row + 1, active.column],
    ArrowLeft: () => [active.row, active.column - 1],
    ArrowRight: () => [active.row, active.column + 1],
    PageUp: () => [active.row - page(), active.column],
    PageDown: () => [active.row + page(), active.column],
    Home: event => [event.ctrlKey ? 0 : active.row, -1],
    End: event => [event.ctrlKey ? rows.length - 1 : active.row, columns.length - 1],
};

function onMatrixKey(event) {
    if (event.altKey || event.metaKey)
        return;
    if (event.key in MOVES)
        moveTo(...MOVES[event.key](event));
    else if (event.key === "Enter" || event.key === " ")
        openCell(active.row, active.column);
    else
        return;
    if (event.key === "Enter")
        details.focus();
    event.preventDefault();
}

function onPageKey(event) {
    const typing = event.target.matches("input[type=search], select");
    if (event.key === "/" && !typing)
        controls.query.focus();
    else if (event.key === "Escape" && !event.target.matches("select"))
        matrix.focus({preventScroll: true});
    else
        return;
    event.preventDefault();
}

addChoices(controls.stage, data.rows.map(row => row.stage));
addChoices(controls.driver, data.compilers.map(driverName));
addChoices(controls.core, data.compilers.map(coreName));
addLegend(addKindButtons());
for (const control of Object.values(controls))
    control.addEventListener("input", filter);
get("reset").addEventListener("click", reset);
get("show-legend").addEventListener("click", showLegend);
get("theme").addEventListener("click", switchTheme);
matrix.addEventListener("keydown", onMatrixKey);
matrix.addEventListener("click", event => {
    const place = placeOf(event.target);
    if (place)
        openCell(place.row, place.column);
});
document.addEventListener("keydown", onPageKey);
scroller.addEventListener("scroll", () => requestAnimationFrame(() => render()));
new ResizeObserver(() => render()).observe(scroller);
filter();

})();
