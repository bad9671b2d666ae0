"use strict";
// Draws the codebook out of the data in the page. Texts become text nodes alone, whatever they hold.
(() => {

const data = JSON.parse(document.getElementById("page-data").textContent);
const { variables, groups, labelSets, kinds, notes } = data;

const chunkSize = 50;          // variables that are drawn at a time
const mostPrintedWhole = 2000; // variables that are printed with details and rulers
const mostPrintedLabels = 50000; // of all variables that are printed; of more each has the first ones
const labelStep = 200;         // value labels that are shown at a time
const noteStep = 25;           // places of a kind of note that are shown at a time
const mostNotesBeside = 100;   // notes that are shown beside a variable
const mostLanes = 12;          // variables that are drawn on one column
const lastColumn = 1000000;    // that is drawn
const mostLinesAtOnce = 40;    // of a ruler; a longer one draws those that can be seen
const mostPrintedLines = 400;  // of a ruler
const mostNeighbours = 8;      // variables on the same columns that are named
const mostRecordsAtOnce = 100; // of a layout with more, each record is drawn as it comes near
const linkStep = 100;          // links to records that are shown at a time

const gravities = {
    lost: "Something in the file is not in the layout.",
    changed: "Something is in the layout as another than it is in the file.",
    curious: "The layout is right as the rules are, and may surprise.",
};

// What the page itself is made of; no fragment of a variable begins like these.
const ownPrefix = "page-";
const page = id => document.getElementById(ownPrefix + id);

// ---------------------------------------------------------------------------------------------------- texts

// An escape in place of each character that shows nothing, that cannot be shown, or that many fonts lack a sign for.
function shown(text)
{
    return text.replace(/[\0-\x1f\x7f-\x9f\u2028\u2029\ud800-\udfff\ufffe\uffff]/gu,
                        character => "\\u" + character.charCodeAt(0).toString(16).padStart(4, "0"));
}

// What a search compares: letters without case, and Latin ones without accents.
function folded(text)
{
    return text.normalize("NFKD").replace(/[\u0300-\u036f]/g, "").toLowerCase();
}

const inEnglish = new Intl.NumberFormat("en"); // kept: to make one takes longer than to use it
const written = number => inEnglish.format(number);
const counted = (count, one, several = one + "s") => written(count) + " " + (count === 1 ? one : several);

function make(tag, className, ...children)
{
    const element = document.createElement(tag);
    if (className)
        element.className = className;
    element.append(...children);
    return element;
}

// An element with a text of the file, whose language and direction nobody knows.
function makeText(tag, className, text)
{
    const element = make(tag, className, shown(text));
    element.dir = "auto";
    element.lang = "";
    return element;
}

function makeButton(className, text, action)
{
    const button = make("button", className, text);
    button.type = "button";
    button.addEventListener("click", action);
    return button;
}

const nameOf = variable => variable.name || "(no name)";
const typeOf = variable => (variable.type || "").toLowerCase();
const classOf = variable => ["integer", "real", "string"].includes(typeOf(variable)) ? typeOf(variable) : "other";
const labelsOf = variable => variable.labels === undefined ? [] : labelSets[variable.labels];
const endOf = variable => variable.start + variable.length - 1;
const hasColumns = variable => variable.start > 0 && variable.length > 0;

function columnsOf(variable)
{
    return variable.length === 1 ? String(variable.start) : variable.start + "–" + endOf(variable);
}

// Its columns, or how wide it is. A length that follows from how a number is stored says nothing of the data.
function whereOf(variable)
{
    if (hasColumns(variable))
        return columnsOf(variable);
    return data.inColumns && variable.length > 0 ? counted(variable.length, "character") : "";
}

function rangeOf(variable)
{
    const { minimum = "", maximum = "" } = variable;
    if (minimum && maximum)
        return minimum + " – " + maximum;
    return minimum ? "from " + minimum : maximum ? "to " + maximum : "";
}

// ------------------------------------------------------------------------------------- what belongs together

// The fragment of a variable is its name; the further ones of a name have a number behind it.
const fragments = [];
const variableOfFragment = new Map();

function nameFragments()
{
    const times = new Map();
    variables.forEach((variable, i) => {
        const name = shown(variable.name);
        const base = name === "" || name.startsWith(ownPrefix) ? "~" + name : name;
        let time = (times.get(base) || 0) + 1;
        let fragment = time === 1 ? base : base + "~" + time;
        while (variableOfFragment.has(fragment))
            fragment = base + "~" + ++time;
        times.set(base, time);
        fragments.push(fragment);
        variableOfFragment.set(fragment, i);
    });
}

const linkTo = variable => "#" + encodeURIComponent(fragments[variable]);

// The notes of each name, and the first variable of it. A note knows its variable by name alone.
const notesOfName = new Map();
const firstOfName = new Map();
const sharedNames = new Set(); // of several variables
const ofThisName = "of a variable of this name";

function gatherNotes()
{
    variables.forEach(({ name }, i) => {
        if (!firstOfName.has(name))
            firstOfName.set(name, i);
        else if (name)
            sharedNames.add(name);
    });
    for (const note of notes) {
        const [kind, , name] = note;
        if (!name || !firstOfName.has(name))
            continue;
        let ofName = notesOfName.get(name);
        if (!ofName)
            notesOfName.set(name, ofName = { all: [], counts: {} });
        ofName.all.push(note);
        const { gravity } = kinds[kind];
        ofName.counts[gravity] = (ofName.counts[gravity] || 0) + 1;
    }
}

// A link that leads to a variable.
function makeLink(variable, className = "")
{
    const link = makeText("a", className, nameOf(variables[variable]));
    link.href = linkTo(variable);
    link.dataset.variable = variable;
    return link;
}

// ------------------------------------------------------------------------------------------------- drawn late

// Draws what comes near to the window.
const lateDrawings = new WeakMap();
const nearWindow = new IntersectionObserver(entries => {
    for (const { isIntersecting, target } of entries) {
        if (isIntersecting)
            drawLate(target);
    }
}, { rootMargin: "600px 0px" });

function whenNear(element, draw)
{
    lateDrawings.set(element, draw);
    nearWindow.observe(element);
}

function drawLate(element)
{
    const draw = lateDrawings.get(element);
    if (!draw)
        return;
    lateDrawings.delete(element);
    nearWindow.unobserve(element);
    draw();
}

// Adds the first so many of the items to a list, and a button for the next ones.
function addInSteps(list, count, step, makeItem)
{
    let done = 0;
    const more = makeButton("more", "", () => add(step * 5));
    const add = some => {
        const end = Math.min(count, done + some);
        for (; done < end; ++done)
            list.append(makeItem(done));
        more.textContent = "and " + written(count - done) + " more";
        more.hidden = done === count;
    };
    add(step);
    if (!more.hidden)
        (list.tagName === "TBODY" ? list.parentElement : list).after(more);
}

// ------------------------------------------------------------------------------------------------------ notes

function makePlace([, line, name, text])
{
    const place = make("li");
    if (name && firstOfName.has(name))
        place.append(makeLink(firstOfName.get(name)));
    else if (name)
        place.append(makeText("span", "name", name));
    if (sharedNames.has(name))
        place.append(make("span", "hint", ofThisName));
    if (line)
        place.append(make("span", "where", "line " + line));
    if (text)
        place.append(makeText("q", "", text));
    return place;
}

function makeKind(kind, places)
{
    const summary = make("summary", "", make("span", "sentence", kind.sentence), " ",
                         make("span", "count", written(kind.count)), " ", make("code", "id", kind.id));
    const element = make("details", "kind", summary);
    const draw = () => {
        if (element.childElementCount > 1)
            return;
        const list = make("ul", "places");
        element.append(list);
        addInSteps(list, places.length, noteStep, i => makePlace(places[i]));
        if (places.length < kind.count)
            element.append(make("p", "hint", counted(kind.count - places.length, "further place is", "further places are")
                                + " not listed."));
    };
    element.addEventListener("toggle", draw);
    element.draw = draw;
    return element;
}

function drawNotes()
{
    if (kinds.length === 0)
        return;
    const places = kinds.map(() => []);
    for (const note of notes)
        places[note[0]].push(note);
    for (const [gravity, meaning] of Object.entries(gravities)) {
        const ofGravity = kinds.map((kind, i) => i).filter(i => kinds[i].gravity === gravity);
        if (ofGravity.length === 0)
            continue;
        const sum = ofGravity.reduce((count, i) => count + kinds[i].count, 0);
        const heading = make("h3", "", make("span", "gravity " + gravity, gravity), " ", written(sum));
        const element = make("details", "of-gravity", make("summary", "", heading, " ", make("span", "hint", meaning)),
                             ...ofGravity.map(i => makeKind(kinds[i], places[i])));
        element.id = ownPrefix + gravity;
        page("notes").append(element);
    }
    page("notes").hidden = false;
}

// -------------------------------------------------------------------------------------------------- variables

const opened = new Set();
let isPrinting = false;
let printsDetails = false;
let printedLabels = 0; // value labels of the variables that are printed
let terms = [];

// The text with what was searched for marked.
function makeMarked(tag, className, text)
{
    const element = makeText(tag, className, text);
    const whole = element.textContent;
    const plain = terms.length > 0 ? folded(whole) : "";
    if (plain.length !== whole.length)
        return element;
    const isMarked = new Uint8Array(whole.length);
    for (const term of terms) {
        for (let at = plain.indexOf(term); at >= 0; at = plain.indexOf(term, at + term.length))
            isMarked.fill(1, at, at + term.length);
    }
    const pieces = [];
    for (let begin = 0, end = 0; begin < whole.length; begin = end) {
        while (end < whole.length && isMarked[end] === isMarked[begin])
            ++end;
        const piece = whole.slice(begin, end);
        pieces.push(isMarked[begin] ? make("mark", "", piece) : piece);
    }
    element.replaceChildren(...pieces);
    return element;
}

// The first value label that has what was searched for and is in neither name nor label.
function makeFoundLabel(variable)
{
    const front = folded(shown(variable.name) + "\n" + shown(variable.label || ""));
    const term = terms.find(sought => !front.includes(sought));
    if (term === undefined)
        return null;
    const labels = labelsOf(variable);
    for (let i = 0; i < labels.length; i += 2) {
        if (folded(shown(labels[i + 1])).includes(term))
            return make("p", "found", makeText("code", "", labels[i]), " ", makeMarked("span", "", labels[i + 1]));
    }
    return null;
}

function makeBadges(variable)
{
    const badges = make("p", "badges");
    const ofName = notesOfName.get(variable.name);
    for (const gravity of ofName ? Object.keys(gravities) : []) {
        if (ofName.counts[gravity]) {
            const badge = make("span", "gravity " + gravity, gravity);
            if (ofName.counts[gravity] > 1)
                badge.append(" " + ofName.counts[gravity]);
            badges.append(badge);
        }
    }
    if (ofName && sharedNames.has(variable.name))
        badges.append(make("span", "hint", ofThisName));
    return badges;
}

function makeVariable(i)
{
    const variable = variables[i];
    const button = makeText("button", "name", "");
    button.type = "button";
    button.append(...makeMarked("span", "", nameOf(variable)).childNodes);
    button.setAttribute("aria-expanded", "false");
    button.addEventListener("click", () => toggle(i));
    const labels = labelsOf(variable).length / 2;
    const row = make("article", "variable", make("h3", "", button), makeMarked("p", "label", variable.label || ""),
                     make("p", "type " + classOf(variable), typeOf(variable)),
                     make("p", "columns", whereOf(variable)),
                     labels ? make("p", "values", counted(labels, "value label")) : makeText("p", "values", rangeOf(variable)),
                     makeBadges(variable));
    row.dataset.index = i;
    row.addEventListener("click", event => {
        if (event.target.closest("button, a, .details") === null && String(getSelection()) === "")
            toggle(i);
    });
    const found = makeFoundLabel(variable);
    if (found)
        row.append(found);
    if (opened.has(i) || printsDetails)
        showDetails(row, i);
    return row;
}

function makeProperties(i)
{
    const variable = variables[i];
    const list = make("dl");
    const add = (caption, value) => {
        if (value !== undefined && value !== "")
            list.append(make("div", "", make("dt", "", caption),
                             value instanceof Node ? make("dd", "", value) : makeText("dd", "", String(value))));
    };
    add("Type", typeOf(variable));
    if (groups.length > 1)
        add("Record", groups[variable.group || 0].name);
    add("Start", variable.start);
    add("Length", variable.length);
    add("Decimals", variable.decimals);
    add("Minimum", variable.minimum);
    add("Maximum", variable.maximum);
    add("Not applicable", variable.notApplicable);
    add("Missing", variable.missing);
    const neighbours = hasColumns(variable) ? sections[variable.group || 0].ruler.neighboursOf(i) : [];
    if (neighbours.length > 0) {
        const links = make("span", "neighbours");
        neighbours.slice(0, mostNeighbours).forEach(other => links.append(makeLink(other), " "));
        if (neighbours.length > mostNeighbours)
            links.append("and more");
        add("Shares columns with", links);
    }
    return list;
}

function makeValueLabels(variable)
{
    const labels = labelsOf(variable);
    const body = make("tbody");
    const step = printsDetails && printedLabels <= mostPrintedLabels ? labels.length / 2 : labelStep;
    const head = make("tr", "", make("th", "", "Code"), make("th", "", "Label"));
    for (const cell of head.children)
        cell.scope = "col";
    const table = make("table", "", make("caption", "", counted(labels.length / 2, "value label")),
                       make("thead", "", head), body);
    const box = make("div", "value-labels", table);
    addInSteps(body, labels.length / 2, step, k => {
        const code = makeText("td", "code", labels[2 * k]);
        return make("tr", "", code, makeMarked("td", "", labels[2 * k + 1]));
    });
    return box;
}

function makeNotesBeside(variable)
{
    const { all } = notesOfName.get(variable.name);
    const list = make("ul", "notes-beside");
    if (sharedNames.has(variable.name))
        list.append(make("li", "hint", "Several variables have this name; each note is " + ofThisName + "."));
    for (const [kind, line, , text] of all.slice(0, mostNotesBeside)) {
        const item = make("li", "", make("span", "gravity " + kinds[kind].gravity, kinds[kind].gravity), " ",
                          make("span", "sentence", kinds[kind].sentence));
        item.append(" ", make("span", "where", kinds[kind].id + (line ? ", line " + line : "")));
        if (text)
            item.append(" ", makeText("q", "", text));
        list.append(item);
    }
    if (all.length > mostNotesBeside)
        list.append(make("li", "hint", counted(all.length - mostNotesBeside, "further note is", "further notes are")
                         + " in the list at the top."));
    return list;
}

function showDetails(row, i)
{
    const variable = variables[i];
    const details = make("div", "details", makeProperties(i));
    details.id = ownPrefix + "details-" + i;
    if (notesOfName.has(variable.name))
        details.append(makeNotesBeside(variable));
    if (labelsOf(variable).length > 0)
        details.append(makeValueLabels(variable));
    const link = make("a", "permalink", "Link to this variable");
    link.href = linkTo(i);
    link.dataset.variable = i;
    details.append(link);
    row.append(details);
    row.classList.add("open");
    const button = row.querySelector("button.name");
    button.setAttribute("aria-expanded", "true");
    button.setAttribute("aria-controls", details.id);
}

function hideDetails(row)
{
    row.querySelector(".details").remove();
    row.classList.remove("open");
    const button = row.querySelector("button.name");
    button.setAttribute("aria-expanded", "false");
    button.removeAttribute("aria-controls");
}

function toggle(i)
{
    const row = rowOf(i);
    if (opened.delete(i)) {
        hideDetails(row);
        return;
    }
    opened.add(i);
    showDetails(row, i);
    history.replaceState(null, "", linkTo(i));
}

// ----------------------------------------------------------------------------------------------------- rulers

/// The columns of a record. What stands in every record, the id items and the record type, is drawn with it.
class Ruler
{
    constructor(group)
    {
        this.group = group;
        this.lanes = null;
    }

    // Gives each variable the first lane that is free, so that those on the same columns stand below each other.
    layOut()
    {
        if (this.lanes)
            return;
        this.lanes = [];
        this.blocks = this.makeBlocks();
        this.crowded = 0;
        this.end = 0;
        const ends = [];
        this.blocks.forEach(block => {
            let lane = ends.findIndex(end => end < block.start);
            if (lane < 0 && ends.length < mostLanes)
                lane = ends.length;
            block.lane = lane;
            if (lane < 0) {
                ++this.crowded;
                return;
            }
            ends[lane] = block.end;
            (this.lanes[lane] = this.lanes[lane] || []).push(block);
            this.end = Math.max(this.end, block.end);
        });
        this.blocks = this.blocks.filter(block => block.lane >= 0);
        this.blocks.forEach((block, order) => block.order = order);
    }

    makeBlocks()
    {
        const blocks = [];
        const add = (i, isCommon) => {
            const variable = variables[i];
            if (hasColumns(variable) && variable.start <= lastColumn)
                blocks.push({ variable: i, start: variable.start, end: Math.min(endOf(variable), lastColumn),
                              kind: isCommon ? "common" : classOf(variable) });
        };
        if (data.recordType && groups[this.group].type !== undefined)
            blocks.push({ variable: -1, start: data.recordType.start, kind: "record-type",
                          end: Math.min(data.recordType.start + data.recordType.length - 1, lastColumn) });
        if (commonGroup >= 0 && groups[this.group].type !== undefined)
            membersOf[commonGroup].forEach(i => add(i, true));
        membersOf[this.group].forEach(i => add(i, false));
        return blocks.sort((a, b) => a.start - b.start || b.end - a.end || a.variable - b.variable);
    }

    // Blocks of a lane do not overlap, so those on some columns stand behind each other.
    * blocksOn(lane, start, end)
    {
        const blocks = this.lanes[lane];
        let low = 0;
        for (let high = blocks.length; low < high;) {
            const middle = (low + high) >> 1;
            if (blocks[middle].end < start)
                low = middle + 1;
            else
                high = middle;
        }
        for (; low < blocks.length && blocks[low].start <= end; ++low)
            yield blocks[low];
    }

    neighboursOf(i)
    {
        this.layOut();
        const found = [];
        for (let lane = 0; lane < this.lanes.length; ++lane) {
            for (const block of this.blocksOn(lane, variables[i].start, endOf(variables[i]))) {
                if (block.variable >= 0 && block.variable !== i)
                    found.push(block.variable);
                if (found.length > mostNeighbours)
                    return found;
            }
        }
        return found;
    }

    draw(element)
    {
        this.layOut();
        this.lines = make("div", "lines");
        this.lines.setAttribute("role", "group");
        this.lines.setAttribute("aria-label", "Columns of the record; arrow keys move between variables");
        this.lines.addEventListener("keydown", event => this.move(event));
        this.lines.addEventListener("scroll", () => this.drawLines());
        for (const type of ["focusin", "pointerover"])
            this.lines.addEventListener(type, event => this.tell(event.target));
        this.readout = make("p", "readout");
        this.readout.setAttribute("aria-hidden", "true");
        element.replaceChildren(this.lines, this.readout, ...this.remarks());
        this.breakLines();
    }

    remarks()
    {
        const remarks = [];
        if (this.crowded)
            remarks.push(make("p", "hint", counted(this.crowded, "variable is", "variables are")
                              + " not drawn: more than " + mostLanes + " stand on the same columns."));
        if (membersOf[this.group].some(i => hasColumns(variables[i]) && endOf(variables[i]) > lastColumn))
            remarks.push(make("p", "hint", "Columns behind " + written(lastColumn) + " are not drawn."));
        return remarks;
    }

    // As many columns a line as fit; a record that is a little longer gets narrower columns.
    breakLines()
    {
        const width = this.lines.clientWidth || 800;
        const tens = columns => Math.max(Math.ceil(columns / 10), Math.floor(width / 280), 2) * 10;
        const fitting = Math.max(Math.floor(width / 110) * 10, 20);
        this.perLine = this.end <= fitting * 1.4 ? tens(this.end) : fitting;
        this.columnWidth = width / this.perLine;
        this.heights = new Uint8Array(Math.ceil(this.end / this.perLine)).fill(1);
        this.lanes.forEach((blocks, lane) => {
            for (const block of blocks) {
                const last = this.lineOf(block.end);
                for (let line = this.lineOf(block.start); line <= last; ++line)
                    this.heights[line] = Math.max(this.heights[line], lane + 1);
            }
        });
        const style = getComputedStyle(this.lines);
        const laneHeight = parseFloat(style.getPropertyValue("--lane"));
        const tickHeight = parseFloat(style.getPropertyValue("--tick"));
        this.tops = new Float64Array(this.heights.length + 1);
        this.heights.forEach((lanes, line) => this.tops[line + 1] = this.tops[line] + tickHeight + lanes * laneHeight);
        this.drawn = null;
        this.lines.replaceChildren();
        this.drawLines();
    }

    lineOf(column)
    {
        return Math.floor((column - 1) / this.perLine);
    }

    // Lines that can be seen, and room for the others.
    drawLines()
    {
        const count = this.heights.length;
        let [first, last] = [0, count];
        const isWhole = count <= mostLinesAtOnce || isPrinting && count <= mostPrintedLines;
        if (!isWhole) {
            const { scrollTop, clientHeight } = this.lines;
            first = Math.max(this.lineAt(scrollTop - 200), 0);
            last = Math.min(this.lineAt(scrollTop + (clientHeight || 400) + 200) + 1, count);
        }
        if (this.drawn && this.drawn[0] === first && this.drawn[1] === last)
            return;
        this.drawn = [first, last];
        const space = height => {
            const element = make("div", "space");
            element.style.height = height + "px";
            return element;
        };
        const drawn = [];
        for (let line = first; line < last; ++line)
            drawn.push(this.makeLine(line));
        const focused = this.lines.contains(document.activeElement) ? document.activeElement.dataset.order : undefined;
        this.lines.replaceChildren(space(this.tops[first]), ...drawn, space(this.tops[count] - this.tops[last]));
        if (focused !== undefined)
            this.linkOf(focused)?.focus({ preventScroll: true });
        this.giveTabStop();
    }

    lineAt(height)
    {
        let [low, high] = [0, this.heights.length];
        while (low < high) {
            const middle = (low + high) >> 1;
            if (this.tops[middle + 1] <= height)
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    }

    makeLine(line)
    {
        const first = line * this.perLine + 1;
        const last = Math.min(first + this.perLine - 1, Math.ceil(this.end / 10) * 10);
        const share = columns => 100 * columns / this.perLine + "%";
        const element = make("div", "line");
        element.style.height = this.tops[line + 1] - this.tops[line] + "px";
        const paper = make("div", "paper");
        paper.style.width = share(last - first + 1);
        paper.style.backgroundSize = 100 * 10 / (last - first + 1) + "% 100%";
        element.append(paper);
        for (let column = first === 1 ? 1 : first + 9; column <= last; column += column === 1 ? 9 : 10) {
            const tick = make("span", column === last ? "tick last" : "tick", String(column));
            tick.style.left = share(column - first + (column === last ? 1 : 0.5));
            element.append(tick);
        }
        for (let lane = 0; lane < this.lanes.length; ++lane) {
            for (const block of this.blocksOn(lane, first, last))
                element.append(this.makeBlock(block, first, last, share));
        }
        return element;
    }

    makeBlock(block, first, last, share)
    {
        const start = Math.max(block.start, first);
        const columns = Math.min(block.end, last) - start + 1;
        const className = "block " + block.kind + (block.start < first ? " from-before" : "")
            + (block.end > last ? " goes-on" : "");
        const isNamed = columns * this.columnWidth >= 40;
        let element;
        if (block.variable >= 0) {
            element = makeLink(block.variable, className);
            element.setAttribute("aria-label", element.textContent + ", columns " + columnsOf(variables[block.variable]));
            element.tabIndex = -1;
        } else {
            element = make("span", className, "type");
        }
        if (!isNamed)
            element.textContent = "";
        element.dataset.order = block.order;
        element.style.left = share(start - first);
        element.style.width = share(columns);
        element.style.setProperty("--at", block.lane);
        return element;
    }

    linkOf(order)
    {
        return this.lines.querySelector("a[data-order='" + order + "']");
    }

    // The ruler is one stop of the tabulator.
    giveTabStop()
    {
        if (!this.lines.querySelector("a[tabindex='0']"))
            this.lines.querySelector("a")?.setAttribute("tabindex", "0");
    }

    move(event)
    {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        const order = event.target.dataset.order;
        if (!step || order === undefined)
            return;
        event.preventDefault();
        let next = Number(order) + step;
        while (this.blocks[next] && this.blocks[next].variable < 0)
            next += step;
        if (!this.blocks[next])
            return;
        if (!this.linkOf(next)) {
            this.lines.scrollTop = this.tops[this.lineOf(this.blocks[next].start)];
            this.drawLines();
        }
        this.lines.querySelectorAll("a[tabindex='0']").forEach(link => link.tabIndex = -1);
        const link = this.linkOf(next);
        link.tabIndex = 0;
        link.focus();
    }

    tell(target)
    {
        const order = target.dataset.order;
        if (order === undefined)
            return;
        const { variable: i } = this.blocks[order];
        if (i < 0) {
            this.readout.replaceChildren("Record type");
            return;
        }
        const variable = variables[i];
        this.readout.replaceChildren(makeText("b", "", nameOf(variable)), " ",
                                     (variable.length === 1 ? "column " : "columns ") + columnsOf(variable), " ",
                                     makeText("span", "", variable.label || ""));
    }
}

// ---------------------------------------------------------------------------------------------------- records

const membersOf = groups.map(() => []);
variables.forEach((variable, i) => membersOf[variable.group || 0].push(i));
// The id items, which stand in front of every record.
const commonGroup = groups.findIndex(group => group.name === "Common" && group.type === undefined);

const sections = groups.map((group, i) => ({ ruler: new Ruler(i), shown: membersOf[i] }));
const chunkOfVariable = new Array(variables.length);
let inOrder = [];  // variables that are shown, as they stand on the page
let placeOf = [];  // place of each in that order

function titleOf(group)
{
    if (group.name)
        return makeText("span", "", group.name);
    return groups.length > 1 ? "Without a record" : "Variables";
}

function makeSection(group, i)
{
    const section = sections[i];
    section.element = make("section", "record");
    section.element.id = ownPrefix + "group-" + i;
    whenNear(section.element, () => drawSection(group, i));
    return section.element;
}

function drawSection(group, i)
{
    const section = sections[i];
    const members = membersOf[i];
    const heading = make("h2", "", titleOf(group));
    heading.id = ownPrefix + "heading-" + i;
    const facts = make("p", "facts");
    if (group.type)
        facts.append("record type ", makeText("code", "", group.type), " · ");
    facts.append(counted(members.length, "variable"));
    section.list = make("div", "list");
    section.element.classList.add("drawn");
    section.element.append(make("header", "", heading, facts));
    section.element.setAttribute("aria-labelledby", heading.id);
    if (members.some(v => hasColumns(variables[v]) && variables[v].start <= lastColumn)) {
        section.map = make("div", "ruler");
        section.element.append(section.map);
        whenNear(section.map, () => {
            section.isRulerDrawn = true;
            section.ruler.draw(section.map);
        });
    }
    section.element.append(section.list);
    drawList(section);
}

// One piece of a list: room for its variables until it comes near.
function makeChunk(members)
{
    const chunk = make("div", "chunk");
    chunk.style.setProperty("--rows", members.length);
    for (const i of members)
        chunkOfVariable[i] = chunk;
    whenNear(chunk, () => {
        chunk.classList.add("drawn");
        chunk.append(...members.map(makeVariable));
        learnHeight(chunk, members);
    });
    return chunk;
}

let isHeightKnown = false;

function learnHeight(chunk, members)
{
    if (isHeightKnown || isPrinting || members.length < 10 || members.some(i => opened.has(i)))
        return;
    isHeightKnown = true;
    const height = chunk.getBoundingClientRect().height;
    if (height > 0)
        document.documentElement.style.setProperty("--row", height / members.length + "px");
}

const isSearching = () => terms.length > 0 || page("noted").checked;

// The variables of a section that is drawn.
function drawList(section)
{
    if (section.map)
        section.map.hidden = isSearching();
    const chunks = [];
    for (let k = 0; k < section.shown.length; k += chunkSize)
        chunks.push(makeChunk(section.shown.slice(k, k + chunkSize)));
    section.list.replaceChildren(...chunks);
}

function drawLists()
{
    inOrder = [];
    placeOf = new Int32Array(variables.length).fill(-1);
    const isSought = isSearching();
    for (const section of sections) {
        section.element.hidden = isSought && section.shown.length === 0;
        section.element.style.setProperty("--rows", section.shown.length);
        for (const v of section.shown) {
            placeOf[v] = inOrder.length;
            inOrder.push(v);
        }
        if (section.list)
            drawList(section);
    }
    drawLinks();
    if (inOrder.length > 0)
        drawChunkOf(inOrder[0]);
}

function linkOf(section, i)
{
    if (!section.link) {
        section.link = make("a", "", titleOf(groups[i]), " ", make("span", "count"));
        section.link.href = "#" + section.element.id;
    }
    section.link.lastChild.textContent = written(section.shown.length);
    return section.link;
}

// Links to the records that are shown.
function drawLinks()
{
    if (groups.length < 2)
        return;
    const linked = sections.map((section, i) => i).filter(i => !sections[i].element.hidden);
    const list = make("span", "links");
    page("groups").replaceChildren(list);
    addInSteps(list, linked.length, linkStep, k => linkOf(sections[linked[k]], linked[k]));
}

function drawRecords()
{
    page("variables").append(...groups.map(makeSection));
    page("groups").hidden = groups.length < 2;
    if (groups.length <= mostRecordsAtOnce)
        sections.forEach(section => drawLate(section.element));
}

// Draws the piece that holds a variable, and its record.
function drawChunkOf(i)
{
    drawLate(sections[variables[i].group || 0].element);
    drawLate(chunkOfVariable[i]);
}

// The row of a variable that is shown, drawn if it was not.
function rowOf(i)
{
    drawChunkOf(i);
    return chunkOfVariable[i].querySelector("article[data-index='" + i + "']");
}

// Opens a variable and brings it into the window.
function goTo(i)
{
    if (placeOf[i] < 0) {
        page("search").value = "";
        page("noted").checked = false;
        search();
    }
    const row = rowOf(i);
    if (!opened.has(i)) {
        opened.add(i);
        showDetails(row, i);
    }
    for (const near of [inOrder[placeOf[i] - chunkSize], inOrder[placeOf[i] + chunkSize]]) {
        if (near !== undefined)
            drawChunkOf(near);
    }
    document.querySelector("article.current")?.classList.remove("current");
    row.classList.add("current");
    row.scrollIntoView();
    row.querySelector("button.name").focus({ preventScroll: true });
    requestAnimationFrame(() => row.scrollIntoView());
}

function goToFragment()
{
    let fragment = location.hash.slice(1);
    try {
        fragment = decodeURIComponent(fragment);
    } catch {
        return;
    }
    const i = variableOfFragment.get(fragment);
    if (i !== undefined) {
        goTo(i);
        return;
    }
    for (const ofGravity of document.querySelectorAll("details.of-gravity")) {
        if (ofGravity.id === fragment)
            ofGravity.open = true;
    }
}

// ----------------------------------------------------------------------------------------------------- search

let fronts = null;   // name and label of each variable, folded
let setTexts = null; // value labels of each set, folded

function prepareSearch()
{
    if (fronts)
        return;
    fronts = variables.map(variable => folded(shown(variable.name) + "\n" + shown(variable.label || "")));
    setTexts = labelSets.map(set => folded(set.filter((text, i) => i % 2).map(shown).join("\n")));
}

// Every word has to be in the name, the label or a value label.
function search()
{
    const words = folded(shown(page("search").value)).split(/\s+/).filter(word => word !== "");
    const isNoted = page("noted").checked;
    if (words.length > 0)
        prepareSearch();
    const setsWith = words.map(word => setTexts.map(text => text.includes(word)));
    const isFound = i => words.every((word, w) => fronts[i].includes(word)
                                     || variables[i].labels !== undefined && setsWith[w][variables[i].labels])
        && (!isNoted || notesOfName.has(variables[i].name));
    terms = words;
    sections.forEach((section, i) => section.shown = words.length > 0 || isNoted ? membersOf[i].filter(isFound)
                                                                                : membersOf[i]);
    drawLists();
    const all = counted(variables.length, "variable");
    page("found").textContent = inOrder.length === variables.length ? all
        : inOrder.length === 0 ? "No variable matches" : written(inOrder.length) + " of " + all;
    if (words.length > 0 || isNoted) {
        const listTop = page("variables").getBoundingClientRect().top + scrollY - page("bar").offsetHeight;
        if (scrollY > listTop)
            scrollTo(0, listTop);
    }
}

let waiting = 0;

// As it is typed; in a very large codebook once the typing pauses.
function searchSoon()
{
    clearTimeout(waiting);
    waiting = setTimeout(search, variables.length > 20000 ? 150 : 0);
}

// ------------------------------------------------------------------------------------------------------- keys

function moveBetweenVariables(event)
{
    const row = event.target.closest("article.variable");
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    if (!row || !step || !event.target.matches("button.name"))
        return;
    const next = inOrder[placeOf[row.dataset.index] + step];
    if (next === undefined)
        return;
    event.preventDefault();
    rowOf(next).querySelector("button.name").focus();
}

function handleKey(event)
{
    if (event.ctrlKey || event.altKey || event.metaKey)
        return;
    if (event.key === "/" && !event.target.matches("input")) {
        event.preventDefault();
        page("search").focus();
        page("search").select();
    } else if (event.key === "Escape" && event.target === page("search")) {
        page("search").value = "";
        search();
    } else if (event.key === "ArrowDown" && event.target === page("search") && inOrder.length > 0) {
        event.preventDefault();
        rowOf(inOrder[0]).querySelector("button.name").focus();
    } else {
        moveBetweenVariables(event);
    }
}

function followLink(event)
{
    const link = event.target.closest("a[data-variable]");
    if (!link || event.ctrlKey || event.metaKey || event.shiftKey)
        return;
    event.preventDefault();
    if (location.hash !== link.hash)
        history.pushState(null, "", link.hash);
    goTo(Number(link.dataset.variable));
}

// --------------------------------------------------------------------------------------------------- printing

let openedForPrint = [];
let scrolledTo = 0;

// Paper has all variables that are shown, where they are not too many with their details, and the notes.
function beforePrint()
{
    isPrinting = true;
    scrolledTo = scrollY;
    printsDetails = inOrder.length <= mostPrintedWhole;
    printedLabels = inOrder.reduce((sum, i) => sum + labelsOf(variables[i]).length / 2, 0);
    page("brief").hidden = printsDetails;
    page("variables").classList.toggle("is-brief", !printsDetails);
    drawLists();
    sections.forEach(section => drawLate(section.element));
    inOrder.forEach(drawChunkOf);
    for (const section of sections) {
        if (printsDetails && section.map && !section.map.hidden) {
            drawLate(section.map);
            section.ruler.drawLines();
        }
    }
    openedForPrint = [...document.querySelectorAll("details:not([open])")];
    for (const element of openedForPrint) {
        element.draw?.();
        element.open = true;
    }
}

function afterPrint()
{
    isPrinting = false;
    printsDetails = false;
    openedForPrint.forEach(element => element.open = false);
    drawLists();
    sections.filter(section => section.isRulerDrawn && !section.map.hidden)
        .forEach(section => section.ruler.drawLines());
    scrollTo(0, scrolledTo);
}

// ------------------------------------------------------------------------------------------------------ start

let lastWidth = 0;

// Fits to the width of the window what was measured.
function fit()
{
    if (isPrinting || lastWidth === document.documentElement.clientWidth)
        return;
    lastWidth = document.documentElement.clientWidth;
    isHeightKnown = false;
    document.documentElement.style.setProperty("--bar", page("bar").offsetHeight + "px");
    sections.filter(section => section.isRulerDrawn && !section.map.hidden)
        .forEach(section => section.ruler.breakLines());
}

nameFragments();
gatherNotes();
drawNotes();
drawRecords();
page("bar").hidden = false;
page("keys").hidden = false;
page("noted-label").hidden = notesOfName.size === 0;
page("variables").classList.toggle("without-notes", notesOfName.size === 0);
search();
fit();

page("search").addEventListener("input", searchSoon);
page("noted").addEventListener("change", search);
page("bar").querySelector("form").addEventListener("submit", event => event.preventDefault());
document.addEventListener("keydown", handleKey);
document.addEventListener("click", followLink);
addEventListener("hashchange", goToFragment);
addEventListener("resize", fit);
addEventListener("beforeprint", beforePrint);
addEventListener("afterprint", afterPrint);
goToFragment();

})();
