// Draws the codebook from the data in the page.

const chunkSize = 50;          // variables that are drawn at a time
const maxPrintedWhole = 2000;  // variables that are printed with details and rulers
const maxPrintedLabels = 50000; // values that are printed; if there are more, only the first ones of each variable
const labelStep = 200;         // values that are shown at a time
const setStep = 20;            // value sets of a variable that are shown at a time
const problemStep = 25;        // problems of a kind that are shown at a time
const maxProblemsInPlace = 100; // problems that are shown with a variable
const maxLanes = 12;           // variables that are drawn on one column
const lastColumn = 1000000;    // last column that is drawn
const maxLinesAtOnce = 40;     // lines of a ruler; only the visible lines of a longer ruler are drawn
const maxPrintedLines = 400;   // lines of a ruler that are printed
const maxNeighbours = 8;       // variables on the same columns that are named
const maxRecordsAtOnce = 100;  // if a layout has more, each record is drawn when it is near the window
const linkStep = 100;          // links to records that are shown at a time
const maxChoices = 1000;       // entries in the lists of records and languages
const widthOfLetter = 8;       // pixels of a letter on a ruler
const longestInPath = 200;     // characters of a name in the path of a problem
const excerptMargin = 80;      // characters of a long text that are shown around a word

const severities = {
    error: "The file has no layout.",
    warning: "Something in the file cannot be used.",
    info: "Unusual, but complete.",
};

const { lists = [], levels = [], relations = [], problems = [], languages = [] } = data;

// ------------------------------------------------------------------------------------- languages and labels

let language = data.language || 0;

// In a list of texts, a text is in the language with its index; a pair is the number of a language and a text.
const languageAt = (part, place) => Array.isArray(part) ? part[0] : place;
const textOf = part => Array.isArray(part) ? part[1] : part;

// The index in a label of the text in the language of the page; 0 if there is no such text.
function placeInLanguage(label)
{
    const place = label.findIndex((part, at) => languageAt(part, at) === language && textOf(part) !== "");
    return Math.max(place, 0);
}

// The text of a label in the language of the page.
function inLanguage(label)
{
    if (label === undefined || label === null || label.length === 0)
        return "";
    return typeof label === "string" ? label : textOf(label[placeInLanguage(label)]);
}

// The code of the language of that text if browsers know it. The language of a single text is unknown.
function codeOf(label)
{
    if (!Array.isArray(label) || label.length === 0)
        return "";
    const place = placeInLanguage(label);
    const code = languages[languageAt(label[place], place)][0];
    return /^[a-z]{2,3}(-[a-z0-9]{2,8})*$/i.test(code) ? code.toLowerCase() : "";
}

const labelOf = element => inLanguage(element.label);
const makeLabel = (tag, className, label) => makeText(tag, className, inLanguage(label), codeOf(label));

// ---------------------------------------------------------------------------- the layout as one list of variables

const variables = [];
const groups = []; // records and lists of id items

function addGroup(group, items)
{
    const g = groups.push(group) - 1;
    let holder; // the item that contains the subitems after it
    for (const variable of items) {
        variable.group = g;
        const i = variables.push(variable) - 1;
        if (!variable.isSubitem)
            holder = i;
        else if (holder !== undefined && variable.subitemOf === variables[holder].name)
            variable.holder = holder;
    }
}

levels.forEach((level, number) => {
    if (level.ids)
        addGroup({ ...level, isIds: true, level: number }, level.ids);
    for (const record of level.records || [])
        addGroup({ ...record, level: number }, record.items || []);
});

const idGroups = groups.map((group, g) => g).filter(g => groups[g].isIds);
const membersOf = groups.map(() => []);
variables.forEach((variable, i) => membersOf[variable.group].push(i));
const subitemsOf = new Map();
variables.forEach(({ holder }, i) => {
    if (holder !== undefined && !subitemsOf.has(holder))
        subitemsOf.set(holder, []);
    subitemsOf.get(holder)?.push(i);
});

const nameOf = variable => variable.name || "(no name)";
const typeOf = variable => variable.type || "numeric";
const startOf = variable => variable.start || 0;
const lengthOf = variable => variable.length || 0;
const occurrencesOf = variable => variable.occurrences || 1;
const setsOf = variable => variable.sets || [];
const valuesOf = set => lists[set.list];
const hasColumns = variable => startOf(variable) > 0 && lengthOf(variable) > 0;
const endOf = variable => startOf(variable) + lengthOf(variable) - 1;
const endOfAll = variable => startOf(variable) + lengthOf(variable) * occurrencesOf(variable) - 1;

function classOf(variable)
{
    if (typeOf(variable) === "alpha")
        return "text";
    if (typeOf(variable) !== "numeric")
        return "other";
    return variable.decimals ? "decimal" : "number";
}

const columnsFrom = (start, end) => start === end ? String(start) : start + "–" + end;
const columnsOf = variable => columnsFrom(startOf(variable), endOf(variable));

// The columns of the first occurrence and the number of occurrences.
function whereOf(variable)
{
    if (!hasColumns(variable))
        return "";
    return columnsOf(variable) + (occurrencesOf(variable) > 1 ? " × " + written(occurrencesOf(variable)) : "");
}

const inWords = word => word.replace(/[A-Z]/g, letter => " " + letter.toLowerCase());
const boundInWords = code => !data.isStatistical ? code : code === "-inf" ? "lowest" : code === "inf" ? "highest" : code;
const rangeInWords = range => Array.isArray(range) ? range.map(boundInWords).join(" to ") : range;
const rangesOf = codes => Array.isArray(codes) ? codes : codes === undefined ? [] : [codes];
const codesInWords = codes => rangesOf(codes).map(rangeInWords).join(", ");

// The number of values with a label: for each list, and for all sets of a variable.
const labelledOf = lists.map(list => list.reduce((sum, value) => sum + (inLanguage(value[1]) !== ""), 0));
const countOfLabels = variable => setsOf(variable).reduce((sum, set) => sum + labelledOf[set.list], 0);

// The values of a variable in short: the number of labels; without labels the codes if they are few, else their number.
function valuesInShort(variable)
{
    const sets = setsOf(variable);
    const count = countOfLabels(variable);
    if (count > 0)
        return counted(count, "value label") + (sets.length > 1 ? " in " + counted(sets.length, "set") : "");
    if (sets.length === 0)
        return "";
    const values = valuesOf(sets[0]);
    return values.length < 4 ? values.map(value => codesInWords(value[0])).join(", ") : counted(values.length, "value");
}

// Whether a code is a user-missing value of a variable, or is reserved for missing values in statistical files.
function isMissing(variable, codes)
{
    if (!data.isStatistical || Array.isArray(codes))
        return false;
    if (typeOf(variable) === "numeric" && /^\.[_a-z]?$/i.test(codes))
        return true;
    return rangesOf(variable.missing).some(range => {
        if (!Array.isArray(range))
            return range === codes;
        const [from, to] = [range[0].replace("inf", "Infinity"), range[1].replace("inf", "Infinity")].map(Number);
        return codes.trim() !== "" && Number(codes) >= from && Number(codes) <= to;
    });
}

// ---------------------------------------------------------------------------------------- links and problems

const fragments = fragmentsOf(variables.map(variable => variable.name || ""));
const variableOfFragment = new Map(fragments.map((fragment, i) => [fragment, i]));
const variableOfPlain = new Map(); // by the fragment in lower case
fragments.forEach((fragment, i) => {
    if (!variableOfPlain.has(fragment.toLowerCase()))
        variableOfPlain.set(fragment.toLowerCase(), i);
});
const groupOfPlain = new Map();
groups.forEach((group, g) => {
    if (group.name && !group.isIds && !groupOfPlain.has(group.name.toLowerCase()))
        groupOfPlain.set(group.name.toLowerCase(), g);
});

const linkTo = variable => addressOf(fragments[variable]);

// A link to a variable.
function makeLink(variable, className = "")
{
    const link = makeText("a", className, nameOf(variables[variable]));
    link.href = linkTo(variable);
    link.dataset.variable = variable;
    return link;
}

// Problems by the path of their element: a variable, or a record.
const problemsOfVariable = new Map();
const problemsOfGroup = new Map();
const inPath = name => (name || "").slice(0, longestInPath);
const pathOfGroup = group => inPath(levels[group.level].name) + "/" + (group.isIds ? "(ids)" : inPath(group.name));

// Assigns each problem to the element with its path; to all of them if several elements have the same path.
function gatherProblems()
{
    if (problems.length === 0)
        return;
    const ofPath = new Map();
    const add = (path, element) => ofPath.has(path) ? ofPath.get(path).push(element) : ofPath.set(path, [element]);
    groups.forEach((group, g) => add(pathOfGroup(group), { group: g }));
    variables.forEach(({ name, group }, i) => add(pathOfGroup(groups[group]) + "/" + inPath(name), { variable: i }));
    const put = (map, key, problem) => map.has(key) ? map.get(key).push(problem) : map.set(key, [problem]);
    problems.forEach((problem, number) => {
        let path = problem[3];
        while (path !== "" && !ofPath.has(path))
            path = path.slice(0, Math.max(path.lastIndexOf("/"), 0));
        for (const { variable, group } of path === "" ? [] : ofPath.get(path)) {
            if (variable === undefined)
                put(problemsOfGroup, group, number);
            else
                put(problemsOfVariable, variable, number);
        }
        placeOfProblem.push(path === "" ? undefined : ofPath.get(path)[0]);
    });
}

const placeOfProblem = []; // the first element with the path of each problem

// ----------------------------------------------------------------------------------------------- late drawing

// Draws elements when they come near the window.
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

// --------------------------------------------------------------------------------------- head of the page

function makeNote(note)
{
    const element = makeText("p", "note", "");
    element.textContent = shownLines(note);
    return element;
}

const makeAliases = aliases => make("p", "hint", "Also named ", makeText("span", "aliases", aliases.join(", ")));

function drawHead()
{
    const title = labelOf(data) || data.name || "";
    if (title !== "") {
        page("title").textContent = shown(title);
        document.title = shown(title) + " – codebook";
    }
    page("title").lang = codeOf(data.label);
}

function drawLanguages()
{
    page("language-row").hidden = languages.length < 2;
    languages.slice(0, maxChoices).forEach(([code, label], number) => {
        const option = make("option", "", shown(label || code || "Text " + (number + 1)));
        option.value = number;
        option.selected = number === language;
        page("language").append(option);
    });
}

function drawAbout()
{
    const about = [];
    if (data.note)
        about.push(makeNote(data.note));
    page("about").replaceChildren(...about);
}

// ---------------------------------------------------------------------------------------------------- problems

function makePlace(number)
{
    const [, , line, path, message] = problems[number];
    const place = make("li");
    const element = placeOfProblem[number];
    if (element?.variable !== undefined)
        place.append(makeLink(element.variable));
    else if (element)
        place.append(makeGroupLink(element.group));
    else if (path)
        place.append(makeText("span", "name", path));
    if (line)
        place.append(make("span", "where", "line " + line));
    place.append(makeText("span", "problem-message", message));
    return place;
}

function makeKind(id, numbers)
{
    const summary = make("summary", "", make("span", "kind-name", shown(id.replace(/-/g, " "))), " ",
                         make("span", "count", written(numbers.length)));
    const element = make("details", "kind", summary);
    const draw = () => {
        if (element.childElementCount > 1)
            return;
        const list = make("ul", "places");
        element.append(list);
        addInSteps(list, numbers.length, problemStep, k => makePlace(numbers[k]));
    };
    element.addEventListener("toggle", draw);
    return element;
}

function drawProblems()
{
    for (const [severity, meaning] of Object.entries(severities)) {
        const kinds = new Map();
        let sum = 0;
        problems.forEach(([of, id], number) => {
            if (of !== severity)
                return;
            kinds.set(id, kinds.get(id) || []);
            kinds.get(id).push(number);
            ++sum;
        });
        if (sum === 0)
            continue;
        const heading = make("h3", "", make("span", "severity " + severity, severity), " ", written(sum));
        const element = make("details", "of-severity", make("summary", "", heading, " ", make("span", "hint", meaning)),
                             ...[...kinds].map(([id, numbers]) => makeKind(id, numbers)));
        element.id = ownPrefix + severity;
        page("problems").append(element);
    }
    page("problems").hidden = problems.length === 0;
}

function makeProblemsOfPlace(numbers)
{
    const list = make("ul", "local-problems");
    for (const number of numbers.slice(0, maxProblemsInPlace)) {
        const [severity, id, line, , message] = problems[number];
        list.append(make("li", "", make("span", "severity " + severity, severity), " ",
                         makeText("span", "problem-message", message), " ",
                         make("span", "where", shown(id) + (line ? ", line " + line : ""))));
    }
    if (numbers.length > maxProblemsInPlace)
        list.append(make("li", "hint", counted(numbers.length - maxProblemsInPlace, "further problem is",
                                               "further problems are") + " in the list at the top."));
    return list;
}

// --------------------------------------------------------------------------------------------------- relations

// The name of a record or an item, with a link to it.
function makeReference(name)
{
    const i = variableOfPlain.get(name.toLowerCase());
    if (i !== undefined)
        return makeLink(i, "name");
    const g = groupOfPlain.get(name.toLowerCase());
    return g === undefined ? makeText("span", "name", name) : makeGroupLink(g);
}

function makeRelation({ name = "", aliases, primary = "", links = [] })
{
    const list = make("ul", "places");
    const element = make("div", "relation", make("h3", "", makeText("span", "name", name)), list);
    for (const [primaryLink, secondary, secondaryLink] of links) {
        const item = make("li", "", makeReference(primary), " and ", makeReference(secondary), ", where ");
        item.append(primaryLink ? makeReference(primaryLink) : "the occurrence number", " equals ",
                    secondaryLink ? makeReference(secondaryLink) : "the occurrence number");
        list.append(item);
    }
    if (links.length === 0)
        list.append(make("li", "", makeReference(primary)));
    if (aliases)
        element.append(makeAliases(aliases));
    return element;
}

function drawRelations()
{
    page("relations").hidden = relations.length === 0;
    page("relations").append(...relations.map(makeRelation));
}

// -------------------------------------------------------------------------------------------------- variables

const opened = new Set();
let isPrinting = false;
let printsDetails = false;
let printedLabels = 0; // number of values of the variables that are printed
let terms = [];

const makeMarked = (tag, className, label) => markWords(makeLabel(tag, className, label), terms);

// The part of a long text around a word in it, on one line.
function excerpt(text, word)
{
    const line = shown(text.replace(/\s+/g, " "));
    const { plain, places } = foldedWithPlaces(line);
    const at = plain.indexOf(word);
    const begin = at < 0 ? 0 : Math.max(places[at] - excerptMargin, 0);
    const end = at < 0 ? line.length : places[at + word.length] + excerptMargin;
    const part = line.slice(begin, end).replace(/^[\udc00-\udfff]|[\ud800-\udbff]$/g, ""); // no half a pair
    return (begin > 0 ? "…" : "") + part + (end < line.length ? "…" : "");
}

// The text other than name and label because of which the search found a variable.
function makeFound(variable)
{
    const front = folded(shown(variable.name || "") + "\n" + shown(labelOf(variable)));
    const term = terms.find(sought => !front.includes(sought));
    if (term === undefined)
        return null;
    const has = text => folded(shownLines(text)).includes(term);
    for (const set of setsOf(variable)) {
        for (const [codes, label] of valuesOf(set)) {
            if (has(inLanguage(label)))
                return make("p", "found", makeText("code", "", codesInWords(codes)), " ", makeMarked("span", "", label));
        }
    }
    const others = [...variable.aliases || [], variable.note || "",
                    ...setsOf(variable).flatMap(set => [set.name || "", labelOf(set)])];
    const other = others.find(has);
    return other === undefined ? null : make("p", "found", makeMarked("span", "", excerpt(other, term)));
}

function makeBadges(i)
{
    const badges = make("p", "badges");
    const counts = {};
    for (const number of problemsOfVariable.get(i) || [])
        counts[problems[number][0]] = (counts[problems[number][0]] || 0) + 1;
    for (const severity of Object.keys(severities)) {
        if (counts[severity])
            badges.append(make("span", "severity " + severity,
                               severity + (counts[severity] > 1 ? " " + counts[severity] : "")));
    }
    return badges;
}

const isOpen = i => opened.has(i) || printsDetails;

function makeVariable(i)
{
    const variable = variables[i];
    const button = markWords(makeText("button", "name", nameOf(variable)), terms);
    button.type = "button";
    button.setAttribute("aria-expanded", "false");
    button.addEventListener("click", () => toggle(i));
    const row = make("article", "variable" + (variable.holder === undefined ? "" : " subitem"), make("h3", "", button),
                     makeMarked("p", "label", variable.label),
                     make("p", "type " + classOf(variable), shown(variable.form || typeOf(variable))),
                     make("p", "columns", whereOf(variable)), makeText("p", "values", valuesInShort(variable)),
                     makeBadges(i));
    row.dataset.index = i;
    row.addEventListener("click", event => {
        if (event.target.closest("button, a, .details") === null && String(getSelection()) === "")
            toggle(i);
    });
    const found = makeFound(variable);
    if (found)
        row.append(found);
    if (isOpen(i))
        showDetails(row, i);
    return row;
}

function makeLinks(members)
{
    const links = make("span", "neighbours");
    members.slice(0, maxNeighbours * 4).forEach(other => links.append(makeLink(other), " "));
    if (members.length > maxNeighbours * 4)
        links.append("and more");
    return links;
}

function lengthInWords(variable)
{
    if (!variable.length)
        return "";
    if (data.isStatistical)
        return typeOf(variable) === "numeric" ? "" : counted(variable.length, "byte");
    return counted(variable.length, "character");
}

function decimalsInWords(variable)
{
    if (!variable.decimals)
        return "";
    return variable.decimals + (data.isStatistical ? "" : variable.hasMark ? ", mark written" : ", mark implied");
}

function makeProperties(i)
{
    const variable = variables[i];
    const list = make("dl");
    const add = (caption, value, className = "") => {
        if (value !== undefined && value !== "")
            list.append(make("div", className, make("dt", "", caption),
                             value instanceof Node ? make("dd", "", value) : makeText("dd", "", String(value))));
    };
    add("Type", inWords(typeOf(variable)));
    add("Format", variable.format ?? (variable.form === typeOf(variable) ? "" : variable.form));
    if (groups.length > 1)
        add("Record", groups[variable.group].isIds ? "all (id item)" : groups[variable.group].name, "of-record");
    if (hasColumns(variable))
        add(lengthOf(variable) === 1 ? "Column" : "Columns", columnsOf(variable));
    add("Length", lengthInWords(variable));
    add("Decimals", decimalsInWords(variable));
    add("Zero fill", variable.isZeroFilled ? "yes" : "");
    add("Occurrences", occurrencesInWords(variable));
    if (variable.holder !== undefined)
        add("Subitem of", makeLink(variable.holder));
    else if (variable.isSubitem)
        add("Subitem of", variable.subitemOf || "no item");
    if (subitemsOf.has(i))
        add("Subitems", makeLinks(subitemsOf.get(i)));
    add("Capture", variable.capture && inWords(variable.capture)
        + (variable.dateFormat ? ", " + variable.dateFormat : ""));
    add("Measure", variable.measure);
    add("Storage", variable.storage);
    add("Display", [variable.displayWidth ? "width " + variable.displayWidth : "", variable.alignment || ""]
        .filter(text => text !== "").join(", "));
    add("Missing values", codesInWords(variable.missing));
    if (data.weight && data.weight === variable.name)
        add("Role", "weight of the file");
    add("Aliases", (variable.aliases || []).join(", "));
    const neighbours = hasColumns(variable) ? sections[variable.group].ruler.neighboursOf(i) : [];
    if (neighbours.length > 0) {
        const links = makeLinks(neighbours.slice(0, maxNeighbours));
        if (neighbours.length > maxNeighbours)
            links.append("and more");
        add("Shares columns with", links);
    }
    return list;
}

// The occurrences in words. A subitem repeats with the item that contains it.
function occurrencesInWords(variable)
{
    const count = variable.occurrences ?? 1;
    const ofHolder = variable.holder === undefined ? 1 : occurrencesOf(variables[variable.holder]);
    if (ofHolder > 1)
        return (count > 1 ? written(count) + " in each of the " : "") + written(ofHolder) + " of its item";
    if (count === 1)
        return "";
    if (!hasColumns(variable) || count < 1)
        return written(count);
    const last = startOf(variable) + (count - 1) * lengthOf(variable);
    return written(count) + ", the last in " + columnsFrom(last, last + lengthOf(variable) - 1);
}

function makeOccurrences(occurrenceLabels)
{
    const list = make("ol", "occurrences");
    addInSteps(list, occurrenceLabels.length, labelStep, k => {
        const [occurrence, label] = occurrenceLabels[k];
        const item = makeLabel("li", "", label);
        item.value = occurrence;
        return item;
    });
    return make("div", "occurrence-labels", make("p", "hint", "Occurrences"), list);
}

// A code of blanks is shown in words, because it would be invisible. Blanks after a code only fill the item.
function makeCode(codes)
{
    const text = codesInWords(codes);
    if (text.trim() !== "")
        return makeText("td", "code", text.replace(/ +$/, ""));
    const words = rangesOf(codes).length === 0 ? "no code" : text === "" ? "empty" : counted(text.length, "blank");
    return make("td", "code blank", words);
}

function makeColor(color)
{
    const swatch = make("span", "swatch");
    swatch.style.backgroundColor = color; // ignored if it is not a color
    return make("span", "color", swatch, " ", makeText("span", "", color));
}

function makeValue(variable, [codes, label, more = {}])
{
    const cell = makeMarked("td", "", label);
    const special = more.special || (isMissing(variable, codes) ? "missing" : "");
    if (special)
        cell.append(" ", make("span", "special", special));
    if (more.image)
        cell.append(" ", make("span", "image", "image ", makeText("code", "", more.image)));
    if (more.textColor)
        cell.append(" ", makeColor(more.textColor));
    if (more.note)
        cell.append(makeNote(more.note));
    return make("tr", special ? "is-special" : "", makeCode(codes), cell);
}

const printsAll = () => printsDetails && printedLabels <= maxPrintedLabels;

function makeValueSets(variable)
{
    const sets = setsOf(variable);
    const list = make("div", "value-sets");
    const box = make("div", "", list);
    addInSteps(list, sets.length, printsAll() ? sets.length : setStep, k => makeValueSet(variable, sets[k]));
    return box;
}

function makeValueSet(variable, set)
{
    const values = valuesOf(set);
    const body = make("tbody");
    const step = printsAll() ? values.length : labelStep;
    const head = make("tr", "", make("th", "", "Code"), make("th", "", "Label"));
    for (const cell of head.children)
        cell.scope = "col";
    const caption = make("caption");
    // The sets of an SPSS file have no names, and their generated names are not shown.
    if (set.name && !(data.isStatistical && /^labels\d+$/.test(set.name)))
        caption.append(makeText("span", "name", set.name), " ");
    if (labelOf(set))
        caption.append(makeLabel("span", "", set.label), " ");
    caption.append(make("span", "hint", counted(values.length, "value") + (set.link ? ", linked" : "")));
    const box = make("div", "value-labels", make("table", "", caption, make("thead", "", head), body));
    if (set.note)
        box.append(makeNote(set.note));
    if (set.aliases)
        box.append(makeAliases(set.aliases));
    addInSteps(body, values.length, step, k => makeValue(variable, values[k]));
    return box;
}

function showDetails(row, i)
{
    const variable = variables[i];
    const details = make("div", "details", makeProperties(i));
    details.id = ownPrefix + "details-" + i;
    if (variable.note)
        details.append(makeNote(variable.note));
    if (problemsOfVariable.has(i))
        details.append(makeProblemsOfPlace(problemsOfVariable.get(i)));
    if (variable.occurrenceLabels)
        details.append(makeOccurrences(variable.occurrenceLabels));
    if (setsOf(variable).length > 0)
        details.append(makeValueSets(variable));
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
    } else {
        opened.add(i);
        showDetails(row, i);
        history.replaceState(null, "", linkTo(i));
        page("unknown").hidden = true;
    }
    nameOpenAll();
}

const areAllOpen = () => inOrder.length > 0 && inOrder.every(i => opened.has(i));

function nameOpenAll()
{
    page("open-all").textContent = areAllOpen() ? "Close all" : "Open all";
}

// Opens or closes all variables that are shown.
function toggleAll()
{
    const isOpening = !areAllOpen();
    inOrder.forEach(i => isOpening ? opened.add(i) : opened.delete(i));
    drawLists();
}

// ----------------------------------------------------------------------------------------------------- rulers

/// The columns of a record: its items with their subitems within them, each occurrence on its columns, and the id items
/// and the record type, which are on each line.
class Ruler
{
    constructor(group)
    {
        this.group = group;
        this.lanes = null;
    }

    // Assigns to each item the first lanes that are free, one for itself and one or more for its subitems, so that
    // items on the same columns are drawn below each other.
    layOut()
    {
        if (this.lanes)
            return;
        this.lanes = [];
        this.stops = []; // variables in the order of the arrow keys
        this.crowded = 0;
        this.end = 0;
        const ends = [];
        for (const unit of this.makeUnits()) {
            let lane = 0;
            while (lane < ends.length && ends.slice(lane, lane + unit.height).some(end => end >= unit.start))
                ++lane;
            if (lane + unit.height > maxLanes) {
                this.crowded += 1 + unit.subitems.length;
                continue;
            }
            for (let own = lane; own < lane + unit.height; ++own) {
                for (let above = ends.length; above < own; ++above)
                    ends[above] = 0;
                ends[own] = unit.end;
            }
            unit.lane = lane;
            (this.lanes[lane] = this.lanes[lane] || []).push(unit);
            this.end = Math.max(this.end, unit.end);
            this.addStops(unit);
        }
        for (let lane = 0; lane < this.lanes.length; ++lane)
            this.lanes[lane] = this.lanes[lane] || [];
    }

    addStops(unit)
    {
        if (unit.variable === undefined)
            return;
        unit.stop = this.stops.push({ variable: unit.variable, start: unit.start }) - 1;
        for (const subitem of unit.subitems)
            subitem.stop = this.stops.push({ variable: subitem.variable, start: subitem.start }) - 1;
    }

    makeUnits()
    {
        const units = [];
        const own = groups[this.group];
        const add = (members, kind) => {
            for (const i of members) {
                if (!this.isInHolder(i) && hasColumns(variables[i]) && startOf(variables[i]) <= lastColumn)
                    units.push(this.makeUnit(i, kind));
            }
        };
        if (data.recordType && !own.isIds && own.type !== undefined)
            units.push({ start: data.recordType[0], end: Math.min(data.recordType[0] + data.recordType[1] - 1, lastColumn),
                         kind: "record-type", height: 1, subitems: [] });
        for (const g of idGroups) {
            if (g !== this.group && groups[g].level <= own.level)
                add(membersOf[g], "common");
        }
        add(membersOf[this.group]);
        return units.sort((a, b) => a.start - b.start || b.end - a.end || a.variable - b.variable);
    }

    // Whether a subitem is within the columns of the item that contains it.
    isInHolder(i)
    {
        const variable = variables[i];
        if (variable.holder === undefined || !hasColumns(variable))
            return false;
        const holder = variables[variable.holder];
        return hasColumns(holder) && startOf(variable) >= startOf(holder) && endOfAll(variable) <= endOf(holder);
    }

    makeUnit(i, kind)
    {
        const variable = variables[i];
        const ends = [];
        const subitems = [];
        let height = 1;
        for (const s of subitemsOf.get(i) || []) {
            if (!this.isInHolder(s))
                continue;
            const subitem = variables[s];
            let lane = ends.findIndex(end => end < startOf(subitem));
            if (lane < 0)
                lane = Math.min(ends.length, maxLanes - 2);
            ends[lane] = endOfAll(subitem);
            height = Math.max(height, lane + 2);
            subitems.push({ variable: s, start: startOf(subitem), lane: lane + 1, kind: kind || classOf(subitem) });
        }
        return { variable: i, start: startOf(variable), end: Math.min(endOfAll(variable), lastColumn), height, subitems,
                 kind: kind || classOf(variable) };
    }

    // The units of a lane on some columns. Units of a lane do not overlap, so these follow each other.
    * unitsOn(lane, start, end)
    {
        const units = this.lanes[lane];
        let low = 0;
        for (let high = units.length; low < high;) {
            const middle = (low + high) >> 1;
            if (units[middle].end < start)
                low = middle + 1;
            else
                high = middle;
        }
        for (; low < units.length && units[low].start <= end; ++low)
            yield units[low];
    }

    // Variables that share columns with another, except the item that contains it and its subitems.
    neighboursOf(i)
    {
        this.layOut();
        const [start, end] = [startOf(variables[i]), endOfAll(variables[i])];
        const found = [];
        if (this.isInHolder(i)) {
            for (const s of subitemsOf.get(variables[i].holder)) {
                if (s !== i && this.isInHolder(s) && startOf(variables[s]) <= end && endOfAll(variables[s]) >= start)
                    found.push(s);
            }
            return found;
        }
        for (let lane = 0; lane < this.lanes.length && found.length <= maxNeighbours; ++lane) {
            for (const unit of this.unitsOn(lane, start, end)) {
                if (unit.variable !== undefined && unit.variable !== i)
                    found.push(unit.variable);
                if (found.length > maxNeighbours)
                    break;
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
            this.lines.addEventListener(type, event => this.describe(event.target));
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
                              + " not drawn: more than " + maxLanes + " are on the same columns."));
        if (membersOf[this.group].some(i => hasColumns(variables[i]) && endOfAll(variables[i]) > lastColumn))
            remarks.push(make("p", "hint", "Columns after " + written(lastColumn) + " are not drawn."));
        return remarks;
    }

    // A line has as many columns as fit; a record that is a little longer has narrower columns.
    breakLines()
    {
        const width = this.lines.clientWidth || 800;
        const tens = columns => Math.max(Math.ceil(columns / 10), Math.floor(width / 280), 2) * 10;
        const fitting = Math.max(Math.floor(width / 110) * 10, 20);
        this.perLine = this.end <= fitting * 1.4 ? tens(this.end) : fitting;
        this.columnWidth = width / this.perLine;
        this.heights = new Uint8Array(Math.ceil(this.end / this.perLine)).fill(1);
        for (const units of this.lanes) {
            for (const unit of units) {
                const last = this.lineOf(unit.end);
                for (let line = this.lineOf(unit.start); line <= last; ++line)
                    this.heights[line] = Math.max(this.heights[line], unit.lane + unit.height);
            }
        }
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

    // Draws the visible lines and reserves space for the others; for printing it draws the first lines.
    drawLines()
    {
        const count = this.heights.length;
        const [first, last] = isPrinting ? [0, Math.min(count, maxPrintedLines)] : this.linesInSight();
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
        const rest = !isPrinting ? space(this.tops[count] - this.tops[last])
            : last < count ? make("p", "hint", "Columns after " + written(last * this.perLine) + " are not printed.") : "";
        const focused = this.lines.contains(document.activeElement) ? document.activeElement.dataset.stop : undefined;
        this.lines.replaceChildren(space(this.tops[first]), ...drawn, rest);
        if (focused !== undefined)
            this.linkOf(focused)?.focus({ preventScroll: true });
        this.giveTabStop();
    }

    linesInSight()
    {
        const count = this.heights.length;
        if (count <= maxLinesAtOnce)
            return [0, count];
        const { scrollTop, clientHeight } = this.lines;
        return [Math.max(this.lineAt(scrollTop - 200), 0),
                Math.min(this.lineAt(scrollTop + (clientHeight || 400) + 200) + 1, count)];
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
        const element = make("div", "line");
        element.style.height = this.tops[line + 1] - this.tops[line] + "px";
        const paper = make("div", "paper");
        paper.style.width = this.share(last - first + 1);
        paper.style.backgroundSize = 100 * 10 / (last - first + 1) + "% 100%";
        element.append(paper);
        for (let column = first === 1 ? 1 : first + 9; column <= last; column += column === 1 ? 9 : 10) {
            const tick = make("span", column === last ? "tick last" : "tick", String(column));
            tick.style.left = this.share(column - first + (column === last ? 1 : 0.5));
            element.append(tick);
        }
        for (let lane = 0; lane < this.lanes.length; ++lane) {
            for (const unit of this.unitsOn(lane, first, last))
                this.addPieces(element, unit, first, last);
        }
        return element;
    }

    share(columns)
    {
        return 100 * columns / this.perLine + "%";
    }

    // Adds the occurrences of an item and of its subitems on some columns.
    addPieces(element, unit, first, last)
    {
        if (unit.variable === undefined) {
            element.append(this.makeBlock(unit, unit.start, unit.end, unit.lane, first, last));
            return;
        }
        const length = lengthOf(variables[unit.variable]);
        const count = occurrencesOf(variables[unit.variable]);
        const from = Math.max(Math.floor((first - unit.start) / length), 0);
        const to = Math.min(Math.floor((last - unit.start) / length), count - 1);
        for (let k = from; k <= to; ++k) {
            const start = unit.start + k * length;
            element.append(this.makeBlock(unit, start, Math.min(start + length - 1, lastColumn), unit.lane, first, last,
                                          count > 1 ? [k] : []));
            for (const subitem of unit.subitems)
                this.addSubitemPieces(element, unit, subitem, k, first, last);
        }
    }

    addSubitemPieces(element, unit, subitem, k, first, last)
    {
        const holder = variables[unit.variable];
        const length = lengthOf(variables[subitem.variable]);
        const count = occurrencesOf(variables[subitem.variable]);
        const begin = subitem.start + k * lengthOf(holder);
        const from = Math.max(Math.floor((first - begin) / length), 0);
        const to = Math.min(Math.floor((last - begin) / length), count - 1);
        for (let j = from; j <= to; ++j) {
            const start = begin + j * length;
            const occurrences = [...occurrencesOf(holder) > 1 ? [k] : [], ...count > 1 ? [j] : []];
            element.append(this.makeBlock(subitem, start, start + length - 1, unit.lane + subitem.lane, first, last,
                                          occurrences));
        }
    }

    makeBlock(part, start, end, lane, first, last, occurrences = [])
    {
        const begin = Math.max(start, first);
        const columns = Math.min(end, last) - begin + 1;
        const isAgain = occurrences.some(number => number > 0);
        const className = "block " + part.kind + (start < first ? " from-before" : "") + (end > last ? " goes-on" : "")
            + (isAgain ? " again" : "") + (part.lane !== lane ? " inner" : "");
        const width = columns * this.columnWidth;
        let element;
        if (part.variable === undefined) {
            element = make("span", className, width < 40 ? "" : "type");
        } else {
            element = makeLink(part.variable, className);
            const numbers = occurrences.map(number => number + 1).join(", ");
            element.setAttribute("aria-label", element.textContent + (numbers ? ", occurrence " + numbers : "")
                                 + (start === end ? ", column " : ", columns ") + columnsFrom(start, end));
            element.tabIndex = -1;
            const named = element.textContent + " " + numbers;
            if (isAgain)
                element.textContent = width < widthOfLetter * named.length + 8 ? numbers : named;
            if (width < (isAgain ? widthOfLetter * numbers.length + 8 : 40))
                element.textContent = "";
            element.dataset.stop = part.stop;
            element.dataset.start = start;
            element.dataset.end = end;
            element.dataset.numbers = numbers;
        }
        element.style.left = this.share(begin - first);
        element.style.width = this.share(columns);
        element.style.setProperty("--at", lane);
        return element;
    }

    linkOf(stop)
    {
        return this.lines.querySelector("a[data-stop='" + stop + "']");
    }

    // The ruler is one stop of the tab key.
    giveTabStop()
    {
        if (!this.lines.querySelector("a[tabindex='0']"))
            this.lines.querySelector("a")?.setAttribute("tabindex", "0");
    }

    move(event)
    {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        const { stop } = event.target.dataset;
        if (!step || stop === undefined)
            return;
        event.preventDefault();
        const next = Number(stop) + step;
        if (!this.stops[next])
            return;
        if (!this.linkOf(next)) {
            this.lines.scrollTop = this.tops[this.lineOf(this.stops[next].start)];
            this.drawLines();
        }
        this.lines.querySelectorAll("a[tabindex='0']").forEach(link => link.tabIndex = -1);
        const link = this.linkOf(next);
        link.tabIndex = 0;
        link.focus();
    }

    // Shows one line about the block under the pointer or with the focus.
    describe(target)
    {
        if (target.classList.contains("record-type")) {
            this.readout.replaceChildren("Record type");
            return;
        }
        const { stop, start, end, numbers } = target.dataset;
        if (stop === undefined)
            return;
        const variable = variables[this.stops[stop].variable];
        const pieces = [makeText("b", "", nameOf(variable)), " "];
        if (numbers) {
            const label = (variable.occurrenceLabels || []).find(([number]) => String(number) === numbers);
            pieces.push("occurrence " + numbers + " ", label ? makeLabel("span", "", label[1]) : "", " ");
        }
        this.readout.replaceChildren(...pieces, (start === end ? "column " : "columns ")
                                     + columnsFrom(Number(start), Number(end)), " ",
                                     makeLabel("span", "", variable.label));
    }
}

// ---------------------------------------------------------------------------------------------------- records

const sections = groups.map((group, g) => ({ ruler: new Ruler(g), shown: membersOf[g] }));
const chunkOfVariable = new Array(variables.length);
let inOrder = [];  // variables that are shown, in the order of the page
let placeOf = [];  // index of each variable in that order

function titleOf(group)
{
    if (group.isIds)
        return levels.length > 1 ? "Id items of level " + (group.level + 1) : "Id items";
    return group.name ? makeText("span", "name", group.name) : data.isStatistical ? "Variables" : "(no name)";
}

function makeGroupLink(g)
{
    const link = make("a", "", titleOf(groups[g]));
    link.href = "#" + ownPrefix + "group-" + g;
    link.dataset.group = g;
    return link;
}

function makeSection(group, g)
{
    const section = sections[g];
    section.isRulerDrawn = false;
    section.list = section.map = undefined;
    section.element = make("section", "record");
    section.element.id = ownPrefix + "group-" + g;
    whenNear(section.element, () => drawSection(group, g));
    return section.element;
}

function makeRecordFacts(group, count)
{
    const facts = make("p", "facts");
    if (group.type)
        facts.append("type ", makeText("code", "", group.type), " · ");
    if (!group.isIds && !data.isStatistical && !group.isOfUnknownNumber) {
        facts.append(group.isOptional ? "optional · " : "required · ");
        facts.append("at most " + counted(group.maximum === undefined ? 1 : group.maximum, "record") + " per case · ");
    }
    if (group.length !== undefined)
        facts.append("length " + group.length + " · ");
    facts.append(counted(count, "variable"));
    return facts;
}

function drawSection(group, g)
{
    const section = sections[g];
    const members = membersOf[g];
    const heading = make("h2", "", titleOf(group));
    if (!group.isIds && labelOf(group))
        heading.append(" ", makeLabel("span", "label", group.label));
    heading.id = ownPrefix + "heading-" + g;
    section.list = make("div", "list");
    section.element.classList.add("drawn");
    section.element.append(make("header", "", heading, makeRecordFacts(group, members.length)));
    section.element.setAttribute("aria-labelledby", heading.id);
    if (!group.isIds)
        addRecordNotes(section.element, group, g);
    else if (problemsOfGroup.has(g))
        section.element.append(makeProblemsOfPlace(problemsOfGroup.get(g)));
    if (members.some(i => hasColumns(variables[i]) && startOf(variables[i]) <= lastColumn)) {
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

function addRecordNotes(element, group, g)
{
    if (group.note)
        element.append(makeNote(group.note));
    if (group.aliases)
        element.append(makeAliases(group.aliases));
    if (problemsOfGroup.has(g))
        element.append(makeProblemsOfPlace(problemsOfGroup.get(g)));
    if (group.occurrenceLabels)
        element.append(makeOccurrences(group.occurrenceLabels));
}

// One part of a list. It is empty space until it comes near the window.
function makeChunk(members)
{
    const chunk = make("div", "chunk");
    const open = members.reduce((count, i) => count + opened.has(i), 0);
    chunk.style.setProperty("--rows", members.length + open * 6);
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

const checks = ["unlabelled", "uncoded", "troubled"];
const selects = ["record", "type"];
const isFiltering = () => checks.some(id => page(id).checked) || selects.some(id => page(id).value !== "");
// A filter by record only does not hide its ruler.
const isSearching = () => terms.length > 0 || checks.some(id => page(id).checked) || page("type").value !== "";

// Draws the variables of a section.
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
    const record = page("record").value;
    inOrder = [];
    placeOf = new Int32Array(variables.length).fill(-1);
    const isNarrowed = isSearching();
    sections.forEach((section, g) => {
        const isOther = record !== "" && record !== String(g);
        section.element.hidden = isOther || isNarrowed && section.shown.length === 0;
        section.element.style.setProperty("--rows", section.shown.length);
        for (const v of section.shown) {
            placeOf[v] = inOrder.length;
            inOrder.push(v);
        }
        if (section.list)
            drawList(section);
    });
    const shownLevels = new Set(groups.filter((group, g) => !sections[g].element.hidden).map(group => group.level));
    for (const { element, number } of levelHeads)
        element.hidden = groupsOfLevel[number].length > 0 && !shownLevels.has(number);
    drawLinks();
    nameOpenAll();
    if (inOrder.length > 0)
        drawChunkOf(inOrder[0]);
}

function linkOf(section, g)
{
    if (!section.link) {
        section.link = make("a", "", titleOf(groups[g]), " ", make("span", "count"));
        section.link.href = "#" + section.element.id;
        section.link.dataset.group = g;
    }
    section.link.lastChild.textContent = written(section.shown.length);
    return section.link;
}

// Draws the links to the records that are shown.
function drawLinks()
{
    if (groups.length < 2)
        return;
    const linked = sections.map((section, g) => g).filter(g => !sections[g].element.hidden);
    const list = make("span", "links");
    page("groups").replaceChildren(list);
    addInSteps(list, linked.length, linkStep, k => linkOf(sections[linked[k]], linked[k]));
}

const levelHeads = [];
const groupsOfLevel = levels.map(() => []);
groups.forEach((group, g) => groupsOfLevel[group.level].push(g));

function makeLevelHead(level, number)
{
    const title = make("p", "level-title", levels.length > 1 ? "Level " + (number + 1) + " " : "Level ");
    title.append(makeText("span", "name", level.name || ""), " ", makeLabel("span", "label", level.label));
    const element = make("div", "level", title);
    if (level.note)
        element.append(makeNote(level.note));
    if (level.aliases)
        element.append(makeAliases(level.aliases));
    levelHeads.push({ element, number });
    return element;
}

// Draws all records again, in the language of the page.
function drawRecords()
{
    levelHeads.length = 0;
    page("variables").replaceChildren();
    levels.forEach((level, number) => {
        if (level.name || level.label || level.note || level.aliases)
            page("variables").append(makeLevelHead(level, number));
        page("variables").append(...groupsOfLevel[number].map(g => makeSection(groups[g], g)));
    });
    page("groups").hidden = groups.length < 2;
    if (groups.length <= maxRecordsAtOnce)
        sections.forEach(section => drawLate(section.element));
}

// Draws the part of the list with a variable, and its record.
function drawChunkOf(i)
{
    drawLate(sections[variables[i].group].element);
    drawLate(chunkOfVariable[i]);
}

// The row of a variable that is shown; draws it if necessary.
function rowOf(i)
{
    drawChunkOf(i);
    return chunkOfVariable[i].querySelector("article[data-index='" + i + "']");
}

function showAll()
{
    page("search").value = "";
    checks.forEach(id => page(id).checked = false);
    selects.forEach(id => page(id).value = "");
    search();
}

// Opens a variable and scrolls to it.
function goTo(i)
{
    page("unknown").hidden = true;
    if (placeOf[i] < 0)
        showAll();
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

function goToGroup(g)
{
    page("unknown").hidden = true;
    if (sections[g].element.hidden)
        showAll();
    const { element } = sections[g];
    drawLate(element);
    element.querySelector("h2").tabIndex = -1;
    element.querySelector("h2").focus({ preventScroll: true });
    const first = inOrder.findIndex(i => variables[i].group >= g);
    for (const near of [inOrder[first - 1], inOrder[first]]) {
        if (near !== undefined)
            drawChunkOf(near);
    }
    element.scrollIntoView();
    // Elements that came near the window are drawn meanwhile and may have moved it.
    requestAnimationFrame(() => requestAnimationFrame(() => element.scrollIntoView()));
}

function decodedFragment()
{
    const fragment = location.hash.slice(1);
    try {
        return decodeURIComponent(fragment);
    } catch {
        return fragment;
    }
}

// Case is ignored unless two names differ only in case.
function goToFragment()
{
    const fragment = decodedFragment();
    const plain = fragment.toLowerCase();
    const i = variableOfFragment.get(fragment) ?? variableOfPlain.get(plain);
    page("unknown").hidden = true;
    if (fragment === "")
        return;
    if (i !== undefined)
        goTo(i);
    else if (groupOfPlain.has(plain))
        goToGroup(groupOfPlain.get(plain));
    else if (plain.startsWith(ownPrefix))
        openOwn(fragment);
    else
        complainOf(fragment);
}

// Opens an element of the page: a record, or the problems of a severity.
function openOwn(fragment)
{
    const g = sections.findIndex(section => section.element.id === fragment);
    if (g >= 0)
        goToGroup(g);
    for (const ofSeverity of document.querySelectorAll("details.of-severity")) {
        if (ofSeverity.id === fragment)
            ofSeverity.open = true;
    }
}

function complainOf(fragment)
{
    page("unknown").replaceChildren("This codebook has no variable and no record ", makeText("code", "", fragment),
                                    ". The search finds variables by a part of their name or label.");
    page("unknown").hidden = false;
    page("unknown").scrollIntoView({ block: "center" });
}

// ----------------------------------------------------------------------------------------------------- search

let fronts = null;   // name, label, aliases, note and value sets of each variable, folded
let setTexts = null; // labels of each list of values, folded

function frontOf(variable)
{
    return [variable.name || "", labelOf(variable), ...variable.aliases || [], variable.note || "",
            ...setsOf(variable).flatMap(set => [set.name || "", labelOf(set)])];
}

function prepareSearch()
{
    if (fronts)
        return;
    fronts = variables.map(variable => folded(frontOf(variable).map(shownLines).join("\n")));
    setTexts = lists.map(list => folded(list.map(value => shown(inLanguage(value[1]))).join("\n")));
}

// The condition of the filters on a variable.
function currentFilter()
{
    const [record, type] = selects.map(id => page(id).value);
    const [isUnlabelled, isUncoded, isTroubled] = checks.map(id => page(id).checked);
    return i => (record === "" || String(variables[i].group) === record)
        && (type === "" || typeOf(variables[i]) === type)
        && (!isUnlabelled || labelOf(variables[i]) === "")
        && (!isUncoded || countOfLabels(variables[i]) === 0)
        && (!isTroubled || problemsOfVariable.has(i));
}

// Each word must occur in the name, the label or another text of the variable, or in a value label.
function search()
{
    const words = wordsOf(page("search").value);
    if (words.length > 0)
        prepareSearch();
    const setsWith = words.map(word => setTexts.map(text => text.includes(word)));
    const isFound = i => words.every((word, w) => fronts[i].includes(word)
                                     || setsOf(variables[i]).some(set => setsWith[w][set.list]));
    terms = words;
    const isNarrowed = words.length > 0 || isFiltering();
    const isLetThrough = currentFilter();
    sections.forEach((section, g) => section.shown = isNarrowed
        ? membersOf[g].filter(i => isLetThrough(i) && isFound(i)) : membersOf[g]);
    drawLists();
    const all = counted(variables.length, "variable");
    page("found").textContent = inOrder.length === variables.length ? all
        : inOrder.length === 0 ? "No variable matches" : written(inOrder.length) + " of " + all;
    if (isNarrowed) {
        const listTop = page("variables").getBoundingClientRect().top + scrollY - page("bar").offsetHeight;
        if (scrollY > listTop)
            scrollTo(0, listTop);
    }
}

let waiting = 0;

// Searches at each key; in a very large codebook only when typing pauses.
function searchSoon()
{
    clearTimeout(waiting);
    waiting = setTimeout(search, variables.length > 20000 ? 150 : 0);
}

function addChoice(select, value, ...content)
{
    const option = make("option", "", ...content);
    option.value = value;
    select.append(option);
}

function groupInWords(group)
{
    const title = titleOf(group);
    return (typeof title === "string" ? title : title.textContent)
        + (!group.isIds && labelOf(group) ? " – " + shown(labelOf(group)) : "");
}

function drawFilters()
{
    const [record, type] = [page("record").value, page("type").value];
    page("record").replaceChildren();
    addChoice(page("record"), "", "all");
    groups.slice(0, maxChoices).forEach((group, g) => addChoice(page("record"), g, groupInWords(group)));
    page("record").value = record;
    page("record-label").hidden = groups.length < 2;
    const types = [...new Set(variables.map(typeOf))];
    page("type").replaceChildren();
    addChoice(page("type"), "", "all");
    types.slice(0, maxChoices).forEach(name => addChoice(page("type"), name, shown(inWords(name))));
    page("type").value = type;
    page("type-label").hidden = types.length < 2;
    page("troubled-label").hidden = problemsOfVariable.size === 0;
}

function switchLanguage()
{
    language = Number(page("language").value);
    fronts = setTexts = null;
    lists.forEach((list, l) => labelledOf[l] = list.reduce((sum, value) => sum + (inLanguage(value[1]) !== ""), 0));
    drawHead();
    drawFilters();
    drawRecords();
    search();
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
    if (event.ctrlKey || event.altKey || event.metaKey || handleSearchKey(event, search))
        return;
    if (event.key === "ArrowDown" && event.target === page("search") && inOrder.length > 0) {
        event.preventDefault();
        rowOf(inOrder[0]).querySelector("button.name").focus();
    } else {
        moveBetweenVariables(event);
    }
}

function followLink(event)
{
    const link = event.target.closest("a[data-variable], a[data-group]");
    if (!link || event.ctrlKey || event.metaKey || event.shiftKey)
        return;
    event.preventDefault();
    if (location.hash !== link.hash)
        history.pushState(null, "", link.hash);
    if (link.dataset.variable !== undefined)
        goTo(Number(link.dataset.variable));
    else
        goToGroup(Number(link.dataset.group));
}

function toggleFilters()
{
    const isShown = page("bar").classList.toggle("with-filters");
    page("filter-button").setAttribute("aria-expanded", String(isShown));
}

// --------------------------------------------------------------------------------------------------- printing

let scrolledTo = 0;

// All variables that are shown are printed, with their details unless they are too many. Problems are not printed.
function beforePrint()
{
    isPrinting = true;
    scrolledTo = scrollY;
    printsDetails = inOrder.length <= maxPrintedWhole;
    printedLabels = inOrder.reduce((sum, i) => sum + setsOf(variables[i])
        .reduce((count, set) => count + valuesOf(set).length, 0), 0);
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
}

function afterPrint()
{
    isPrinting = false;
    printsDetails = false;
    drawLists();
    sections.filter(section => section.isRulerDrawn && !section.map.hidden)
        .forEach(section => section.ruler.drawLines());
    scrollTo(0, scrolledTo);
}

// ------------------------------------------------------------------------------------------------------ start

let lastWidth = 0;

// Measures again after the width of the window changed.
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

gatherProblems();
drawHead();
drawAbout();
drawLanguages();
drawProblems();
drawRelations();
drawFilters();
drawRecords();
page("bar").hidden = false;
page("keys").hidden = false;
page("variables").classList.toggle("without-problems", problemsOfVariable.size === 0);
search();
fit();

page("search").addEventListener("input", searchSoon);
for (const id of [...checks, ...selects])
    page(id).addEventListener("change", search);
page("language").addEventListener("change", switchLanguage);
page("open-all").addEventListener("click", toggleAll);
page("filter-button").addEventListener("click", toggleFilters);
page("bar").querySelector("form").addEventListener("submit", event => event.preventDefault());
document.addEventListener("keydown", handleKey);
document.addEventListener("click", followLink);
addEventListener("hashchange", goToFragment);
addEventListener("resize", fit);
addEventListener("beforeprint", beforePrint);
addEventListener("afterprint", afterPrint);
goToFragment();

