// Functions of all pages. Texts of a file only become text nodes, whatever they contain.

// The prefix of the ids of the elements of a page. No fragment of a variable begins with it.
const ownPrefix = "page-";
const page = id => document.getElementById(ownPrefix + id);
const data = JSON.parse(page("data").textContent);

// ---------------------------------------------------------------------------------------------------- texts

// The text with an escape for each character that is invisible, that cannot be shown, or that many fonts lack.
function shown(text)
{
    return text.replace(/[\0-\x1f\x7f-\x9f\u2028\u2029\ud800-\udfff\ufffe\uffff]/gu,
                        character => "\\u" + character.charCodeAt(0).toString(16).padStart(4, "0"));
}

// Likewise, except for line feeds, which separate the lines of a note.
const shownLines = text => text.split(/\r?\n/).map(shown).join("\n");

// Letters that NFKD does not decompose, typographic quotation marks, and dashes.
const plainCharacters = new Map(Object.entries({
    "ß": "ss", "æ": "ae", "œ": "oe", "ø": "o", "đ": "d", "ð": "d", "ł": "l", "ħ": "h", "ı": "i", "ς": "σ", "þ": "th",
    "‘": "'", "’": "'", "‚": "'", "‛": "'", "ʼ": "'", "ʻ": "'", "ʹ": "'", "′": "'", "`": "'", "´": "'", "ˈ": "'",
    "“": "\"", "”": "\"", "„": "\"", "‟": "\"", "«": "\"", "»": "\"", "″": "\"",
    "‐": "-", "‑": "-", "‒": "-", "–": "-", "—": "-", "―": "-", "−": "-",
}));
const plainPattern = new RegExp("[" + [...plainCharacters.keys()].join("") + "]", "g");
// Accents, and the vowel signs of Hebrew and Arabic.
const marksPattern = /[\u0300-\u036f\u0591-\u05bd\u05bf\u05c1\u05c2\u05c4\u05c5\u05c7\u0640\u064b-\u065f\u0670]/g;

// The form of a text that a search compares: without differences of case, accents and typography.
function folded(text)
{
    return text.toLowerCase().replace(plainPattern, character => plainCharacters.get(character)).normalize("NFKD")
        .toLowerCase().replace(marksPattern, "").replace(plainPattern, character => plainCharacters.get(character));
}

// The folded text, and for each of its characters the index in the original text.
function foldedWithPlaces(text)
{
    let plain = "";
    const places = [];
    let place = 0;
    for (const character of text) {
        for (const unit of folded(character)) {
            plain += unit;
            for (let i = 0; i < unit.length; ++i)
                places.push(place);
        }
        place += character.length;
    }
    places.push(text.length);
    return { plain, places };
}

const inEnglish = new Intl.NumberFormat("en"); // made once, because making one takes longer than using it
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

// An element with a text of the file, whose direction is unknown.
function makeText(tag, className, text, language = "")
{
    const element = make(tag, className, shown(text));
    element.dir = "auto";
    element.lang = language;
    return element;
}

function makeButton(className, text, action)
{
    const button = make("button", className, text);
    button.type = "button";
    button.addEventListener("click", action);
    return button;
}

// The words of a search.
const wordsOf = text => folded(shown(text)).split(/\s+/).filter(word => word !== "");

// The text with the words of the search marked.
function markWords(element, words)
{
    if (words.length === 0)
        return element;
    const whole = element.textContent;
    const { plain, places } = foldedWithPlaces(whole);
    const isMarked = new Uint8Array(whole.length + 1);
    for (const word of words) {
        for (let at = plain.indexOf(word); at >= 0; at = plain.indexOf(word, at + word.length))
            isMarked.fill(1, places[at], places[at + word.length]);
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

// The fragment of a variable is its name; further variables of the same name have a number appended.
function fragmentsOf(names)
{
    const times = new Map();
    const taken = new Set();
    return names.map(name => {
        const text = shown(name);
        const base = text === "" || text.startsWith(ownPrefix) ? "~" + text : text;
        let time = (times.get(base) || 0) + 1;
        let fragment = time === 1 ? base : base + "~" + time;
        while (taken.has(fragment))
            fragment = base + "~" + ++time;
        times.set(base, time);
        taken.add(fragment);
        return fragment;
    });
}

// Half a surrogate pair cannot be part of an address; `shown` replaces it in a fragment.
const addressOf = fragment => "#" + encodeURIComponent(fragment);

// Adds the first items to a list, at most one step, and a button for the next ones.
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

// The key "/" moves the focus to the search, Escape clears it.
function handleSearchKey(event, search)
{
    if (event.key === "/" && !event.target.matches("input, select")) {
        event.preventDefault();
        page("search").focus();
        page("search").select();
    } else if (event.key === "Escape" && event.target === page("search")) {
        page("search").value = "";
        search();
    } else {
        return false;
    }
    return true;
}

