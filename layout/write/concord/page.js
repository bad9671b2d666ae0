// Draws the table of variables and codes, with a column for each round, and narrows it.

const chunkSize = 30; // variables that are drawn together, when they come near the window

const textOf = index => data.texts[index];
const isAbsent = cell => cell === null;
const isSame = cell => cell === 0;

// The cells of a variable are absent, the same as the nearest earlier one, or a list: name, label, record, changes.
const variables = data.variables.map(([cells, codes], index) => ({
    index,
    cells,
    codes: codes.map(([from, to, special, change, labels]) => ({ from, to, special, change, labels })),
    isOpen: false,
    shownCodes: [],
}));
const first = variable => variable.cells.find(cell => cell !== null);
const changesOf = cell => data.changes.filter((word, bit) => cell[3] & 1 << bit);

// Texts for the search, which are made when they are needed for the first time.
function textsOfVariable(variable)
{
    variable.folded = variable.folded ?? folded(variable.cells.filter(Array.isArray)
        .flatMap(cell => cell.slice(0, 3).map(textOf)).map(shown).join("\n"));
    return variable.folded;
}

function textsOfCode(code)
{
    code.folded = code.folded ?? folded([code.from, code.to, ...code.labels.filter(label => label !== null && label > 0)
        .map(label => label - 1)].map(textOf).map(shown).join("\n"));
    return code.folded;
}

// ------------------------------------------------------------------------------------------------------ drawing

const isChanged = variable => variable.cells.some(cell => Array.isArray(cell) && cell[3] !== 0);
const isAbsentSomewhere = variable => variable.cells.some(isAbsent);

function makeCell(className, ...content)
{
    const cell = make("div", "cell " + className, ...content);
    cell.setAttribute("role", "cell");
    return cell;
}

const makeAbsent = () => makeCell("absent", "–");
const makeSame = () => makeCell("same", "=");

function makeVariableCell(cell, isFirst)
{
    if (isAbsent(cell))
        return makeAbsent();
    if (isSame(cell))
        return makeSame();
    const [item, label, record] = cell;
    const words = changesOf(cell);
    const element = makeCell("");
    for (const word of words)
        element.append(make("span", "change change-" + word, word));
    if (isFirst || words.includes("renamed"))
        element.append(markWords(makeText("span", "name", textOf(item)), terms));
    if (words.includes("moved"))
        element.append(markWords(makeText("span", "place", textOf(record)), terms));
    if (isFirst || words.includes("label"))
        element.append(markWords(makeText("span", "label", textOf(label)), terms));
    if (element.childNodes.length === 0)
        return makeSame();
    return element;
}

function makeRow(className, heading, cells)
{
    const row = make("div", "row " + className, heading, ...cells);
    row.setAttribute("role", "row");
    return row;
}

function makeHeading(role, ...content)
{
    const heading = make("div", "first", ...content);
    heading.setAttribute("role", role);
    return heading;
}

function makeVariableRow(variable)
{
    const [item, label] = first(variable);
    const button = makeButton("name", "", () => toggle(variable));
    button.append(markWords(makeText("span", "", textOf(item)), terms));
    button.disabled = variable.codes.length === 0;
    button.setAttribute("aria-expanded", String(variable.isOpen));
    const heading = makeHeading("rowheader", button, markWords(makeText("span", "label", textOf(label)), terms));
    const start = variable.cells.indexOf(first(variable));
    return makeRow("variable-row", heading, variable.cells.map((cell, r) => makeVariableCell(cell, r === start)));
}

function describeCode(code)
{
    const from = textOf(code.from).trim() === "" ? "(blank)" : textOf(code.from);
    const to = textOf(code.to);
    return (to === "" ? from : from + " to " + to) + (code.special ? " [" + code.special + "]" : "");
}

// A round that does not have the variable has an empty cell.
function makeCodeCell(label, isVariableAbsent)
{
    if (isVariableAbsent)
        return makeCell("");
    if (isAbsent(label))
        return makeAbsent();
    return isSame(label) ? makeSame() : makeCell("", markWords(makeText("span", "label", textOf(label - 1)), terms));
}

function makeCodeRow(variable, code)
{
    const heading = makeHeading("rowheader");
    const word = data.codeChanges[code.change];
    if (word !== "none")
        heading.append(make("span", "change change-" + word, word));
    heading.append(markWords(makeText("span", "code", describeCode(code)), terms));
    return makeRow("code-row", heading, code.labels.map((label, r) => makeCodeCell(label, isAbsent(variable.cells[r]))));
}

function makeGroup(variable)
{
    const group = make("div", "group", makeVariableRow(variable));
    group.setAttribute("role", "rowgroup");
    for (const code of variable.isOpen ? variable.codes : variable.shownCodes)
        group.append(makeCodeRow(variable, code));
    variable.element = group;
    return group;
}

function toggle(variable)
{
    variable.isOpen = !variable.isOpen;
    const before = variable.element;
    const hadFocus = before.contains(document.activeElement);
    before.replaceWith(makeGroup(variable));
    if (hadFocus)
        variable.element.querySelector("button").focus();
}

function drawChunk(chunk)
{
    if (chunk.classList.contains("drawn"))
        return;
    chunk.classList.add("drawn");
    chunk.append(...chunk.members.map(makeGroup));
}

const near = new IntersectionObserver(entries => entries.filter(entry => entry.isIntersecting)
    .forEach(entry => drawChunk(entry.target)), { root: page("table"), rootMargin: "1200px 0px" });

function makeHead()
{
    const heading = makeHeading("columnheader", "Variable");
    const cells = data.rounds.map(round => {
        const cell = makeText("div", "", round);
        cell.setAttribute("role", "columnheader");
        return cell;
    });
    return makeRow("head", heading, cells);
}

function drawTable(members)
{
    near.disconnect();
    const chunks = [];
    for (let begin = 0; begin < members.length; begin += chunkSize) {
        const chunk = make("div", "chunk");
        chunk.members = members.slice(begin, begin + chunkSize);
        const rows = chunk.members.reduce(
            (sum, variable) => sum + 1 + (variable.isOpen ? variable.codes : variable.shownCodes).length, 0);
        chunk.style.setProperty("--rows", rows);
        chunks.push(chunk);
    }
    page("table").replaceChildren(makeHead(), ...chunks);
    page("table").scrollTop = 0;
    chunks.forEach(chunk => near.observe(chunk));
}

// ---------------------------------------------------------------------------------------------- search and filter

let terms = []; // the words of the search

const isOfKind = {
    "": () => true,
    differs: variable => isChanged(variable) || isAbsentSomewhere(variable)
        || variable.codes.some(code => code.change !== 0),
    absent: isAbsentSomewhere,
};
data.changes.forEach((word, bit) => isOfKind[word]
    = variable => variable.cells.some(cell => Array.isArray(cell) && cell[3] & 1 << bit));

// The codes that the filter and the search request; null if the variable is not shown.
function codesFound(variable, kind, words)
{
    const change = kind.startsWith("code-") ? data.codeChanges.indexOf(kind.slice(5)) : -1;
    if (change < 0 && !isOfKind[kind](variable))
        return null;
    const rest = words.filter(word => !textsOfVariable(variable).includes(word));
    const isCodeFound = code => (change < 0 || code.change === change)
        && rest.every(word => textsOfCode(code).includes(word));
    if (change < 0 && rest.length === 0)
        return [];
    const codes = variable.codes.filter(isCodeFound);
    return codes.length === 0 ? null : codes;
}

function narrow()
{
    const kind = page("kind").value;
    terms = wordsOf(page("search").value);
    const members = [];
    for (const variable of variables) {
        const codes = codesFound(variable, kind, terms);
        variable.shownCodes = codes || [];
        if (codes)
            members.push(variable);
    }
    drawTable(members);
    const all = counted(variables.length, "variable");
    page("found").textContent = members.length === variables.length ? all
        : members.length === 0 ? "No variable matches" : written(members.length) + " of " + all;
}

function addKind(group, value, text, count)
{
    if (count > 0)
        group.append(new Option(text + " (" + written(count) + ")", value));
}

function makeGroupOfKinds(label)
{
    const group = make("optgroup", "");
    group.label = label;
    return group;
}

function drawKinds()
{
    const ofVariables = makeGroupOfKinds("Variables");
    const ofCodes = makeGroupOfKinds("Codes");
    for (const kind of ["differs", ...data.changes, "absent"])
        addKind(ofVariables, kind, kind === "absent" ? "absent in a round" : kind, variables.filter(isOfKind[kind]).length);
    data.codeChanges.forEach((word, change) => {
        const count = variables.reduce((sum, variable) => sum
            + variable.codes.filter(code => code.change === change).length, 0);
        if (change > 0)
            addKind(ofCodes, "code-" + word, word + (["added", "removed"].includes(word) ? "" : " changed"), count);
    });
    page("kind").append(new Option("all", ""), ofVariables, ofCodes);
}

function toggleAll()
{
    const isOpen = page("open-all").getAttribute("aria-expanded") !== "true";
    page("open-all").setAttribute("aria-expanded", String(isOpen));
    page("open-all").textContent = isOpen ? "Close all codes" : "Open all codes";
    for (const variable of variables)
        variable.isOpen = isOpen;
    narrow();
}

let waiting = 0;

// Searches at each key; in a very large table only when typing pauses.
function searchSoon()
{
    clearTimeout(waiting);
    waiting = setTimeout(narrow, variables.length * data.rounds.length > 50000 ? 150 : 0);
}

page("table").style.setProperty("--rounds", data.rounds.length);
drawKinds();
narrow();
page("bar").hidden = false;
page("keys").hidden = false;
page("search").addEventListener("input", searchSoon);
page("kind").addEventListener("change", narrow);
page("open-all").addEventListener("click", toggleAll);
page("search").form.addEventListener("submit", event => event.preventDefault());
document.addEventListener("keydown", event => handleSearchKey(event, narrow));
addEventListener("beforeprint", () => page("table").querySelectorAll(".chunk").forEach(drawChunk));
