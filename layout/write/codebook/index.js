// Draws the index of several codebooks and searches all of them.

const foundStep = 20; // variables of a codebook that are shown at a time

const titleOf = book => book.label || book.name || "";
const linkTextOf = book => titleOf(book) || book.file || "Codebook";
const hrefOf = book => encodeURIComponent(book.page);

let fronts = null; // names, labels and aliases of each variable of each codebook, folded
let lists = null;  // value labels of each value set of each codebook, folded

// An item is a list of its texts and of the numbers of its lists of value labels.
const textsOf = item => item.filter(part => typeof part === "string");
const listsOf = item => item.filter(part => typeof part === "number");

function prepareSearch()
{
    if (fronts)
        return;
    fronts = data.map(book => book.items.map(item => folded(textsOf(item).map(shown).join("\n"))));
    lists = data.map(book => book.lists.map(list => folded(shownLines(list))));
}

// The variables of a codebook in which all words occur.
function findIn(b, words)
{
    const listsWith = words.map(word => lists[b].map(list => list.includes(word)));
    return data[b].items.map((item, i) => i).filter(i => words.every(
        (word, w) => fronts[b][i].includes(word) || listsOf(data[b].items[i]).some(list => listsWith[w][list])));
}

// The text other than name and label because of which a variable is found.
function foundText(book, item, words)
{
    const has = word => text => folded(shown(text)).includes(word);
    const word = words.find(sought => !has(sought)(item[0] + "\n" + item[1]));
    if (word === undefined)
        return undefined;
    return textsOf(item).slice(2).find(has(word))
        ?? listsOf(item).flatMap(list => book.lists[list].split("\n")).find(has(word));
}

function makeTitle(book, words)
{
    const link = markWords(makeText("a", "", linkTextOf(book)), words);
    link.href = hrefOf(book);
    return make("h2", "", link);
}

function makeFacts(book, words)
{
    const facts = make("p", "facts");
    if (book.label && book.name)
        facts.append(markWords(makeText("code", "", book.name), words), " · ");
    if (book.file && titleOf(book) !== "")
        facts.append(markWords(makeText("span", "", book.file), words), " · ");
    if (book.format)
        facts.append(shown(book.format), " · ");
    if (book.records > 0)
        facts.append(counted(book.records, "record"), " · ");
    facts.append(counted(book.items.length, "variable"));
    return facts;
}

function makeFound(book, found, words)
{
    const list = make("ul", "found-list");
    const fragments = fragmentsOf(book.items.map(item => item[0]));
    const box = make("div", "", list);
    addInSteps(list, found.length, foundStep, k => {
        const item = book.items[found[k]];
        const link = makeText("a", "name", item[0] || "(no name)");
        link.href = hrefOf(book) + addressOf(fragments[found[k]]);
        const entry = make("li", "", markWords(link, words), " ", markWords(makeText("span", "label", item[1]), words));
        const other = foundText(book, item, words);
        if (other !== undefined)
            entry.append(" ", markWords(makeText("span", "hint", other), words));
        return entry;
    });
    return box;
}

// A codebook is found by its own texts, without its variables, or by variables in which all words occur.
function search()
{
    const words = wordsOf(page("search").value);
    if (words.length > 0)
        prepareSearch();
    const books = [];
    let count = 0;
    data.forEach((book, b) => {
        const own = folded([titleOf(book), book.name || "", book.file || ""].map(shown).join("\n"));
        const found = words.length === 0 ? [] : findIn(b, words);
        if (found.length === 0 && !words.every(word => own.includes(word)))
            return;
        count += found.length;
        const element = make("section", "book", makeTitle(book, words), makeFacts(book, words));
        if (found.length > 0)
            element.append(makeFound(book, found, words));
        books.push(element);
    });
    page("books").replaceChildren(...books);
    page("found").textContent = words.length === 0 ? counted(data.length, "codebook")
        : books.length === 0 ? "Nothing matches"
        : counted(count, "variable") + " in " + counted(books.length, "codebook");
}

let waiting = 0;

page("bar").hidden = false;
page("keys").hidden = false;
search();
page("search").addEventListener("input", () => {
    clearTimeout(waiting);
    waiting = setTimeout(search, 100);
});
page("bar").querySelector("form").addEventListener("submit", event => event.preventDefault());
document.addEventListener("keydown", event => {
    if (!event.ctrlKey && !event.altKey && !event.metaKey)
        handleSearchKey(event, search);
});
