// Filters the list of differences by kind and by words.

const sections = [...document.querySelectorAll("section.record")].map(element => ({
    element,
    heading: folded(element.querySelector("header").textContent),
    items: [...element.querySelectorAll(".changed-item")].map(item => ({
        element: item,
        name: folded(item.querySelector("h3")?.textContent ?? ""),
        lines: item.dataset.kind ? [item] : [...item.querySelectorAll("[data-kind]")],
        sets: [...item.querySelectorAll(".of-set")],
    })),
}));

// The folded text of a line. It is made when it is needed for the first time.
function textOf(line)
{
    line.foldedText = line.foldedText || folded(line.textContent);
    return line.foldedText;
}

function isFound(line, words, names)
{
    return words.every(word => names.includes(word) || textOf(line).includes(word));
}

// Hides the heading of a value set if all lines after it are hidden.
function hideEmptySets(item)
{
    for (const set of item.sets) {
        let line = set.nextElementSibling;
        while (line && line.hidden && line.dataset.kind)
            line = line.nextElementSibling;
        set.hidden = !line || !line.dataset.kind;
    }
}

function narrowItem(item, kind, words, heading)
{
    const names = heading + "\n" + item.name;
    let count = 0;
    for (const line of item.lines) {
        const isShown = (kind === "" || line.dataset.kind === kind) && isFound(line, words, names);
        if (line !== item.element && line.tagName !== "H3")
            line.hidden = !isShown;
        count += isShown ? Number(line.dataset.count || 1) : 0;
    }
    hideEmptySets(item);
    item.element.hidden = count === 0;
    return count;
}

function narrow()
{
    const kind = page("kind").value;
    const words = wordsOf(page("search").value);
    let count = 0;
    for (const section of sections) {
        let here = 0;
        for (const item of section.items)
            here += narrowItem(item, kind, words, section.heading);
        section.element.hidden = here === 0;
        count += here;
    }
    const isNarrow = kind !== "" || words.length > 0;
    page("found").textContent = isNarrow ? counted(count, "difference") + " found" : "";
}

function start()
{
    page("kind").append(new Option("all", ""));
    for (const kind of data)
        page("kind").append(new Option(kind.kind + " (" + written(kind.count) + ")", kind.kind));
    page("kind").addEventListener("change", narrow);
    page("search").addEventListener("input", narrow);
    page("search").form.addEventListener("submit", event => event.preventDefault());
    document.addEventListener("keydown", event => handleSearchKey(event, narrow));
    page("bar").hidden = data.length === 0;
    page("keys").hidden = data.length === 0;
}

start();
