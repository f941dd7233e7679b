"use strict";

// The form's fields are its only state: the program reads and writes them by id. What this
// script adds is steps that open, rows of causal factors, and prompt news of what is typed.

delete window.WebSocket; // the one road to the network that is not the program's to close

const LongText = 20000; // from here on a twin costs more than the pace of typing allows
const PageText = 1500; // what is longer may be torn by a page
const LineText = 45; // on half the paper's width
const SmallBar = 54; // the height of the bar once the form is scrolled
// Where a word has to be broken, the engine measures the rest of it for each line: minutes for a
// million characters. Such a word gets places to break at in the twin and none in the field.
const EndlessWord = /\S{2000}/;
const WordPart = /\S{50}/g;
const MaxNumber = 999; // the highest number of a row that is made

const byId = id => document.getElementById(id);
const all = (selector, root) => Array.from((root || document).querySelectorAll(selector));
const isTextField = e => e.tagName === "TEXTAREA" || (e.tagName === "INPUT" && e.type === "text");
const isShown = section => section.style.display !== "none";

// ---- Other languages: the program may have brought the page's texts along, by the English ones.

const texts = window.formTexts || {};

// A text with each %1, %2 and so on replaced by a value.
const tr = (text, ...values) => values.reduce(
    (filled, value, i) => filled.replace("%" + (i + 1), () => value), texts[text] || text);

// What stands in a choice is what the form keeps; its label is what is shown.
function translateText(node) {
    const text = node.nodeValue.replace(/\s+/g, " ").trim();
    if (texts[text] && node.parentNode.nodeName !== "OPTION")
        node.nodeValue = node.nodeValue.replace(/\S[^]*\S/, () => texts[text]);
}

function translate(root) {
    const walker = document.createTreeWalker(root, NodeFilter.SHOW_TEXT, null, false);
    while (walker.nextNode())
        translateText(walker.currentNode);
    ["title", "placeholder", "aria-label", "alt", "data-title"].forEach(name => {
        all("[" + name + "]", root).forEach(
            element => element.setAttribute(name, tr(element.getAttribute(name))));
    });
    all("option", root).forEach(option => { option.label = tr(option.text); });
}

function translatePage() {
    if (!window.formTexts)
        return;
    document.documentElement.removeAttribute("lang");
    translate(document);
    translate(byId("causalFactorTemplate").content);
}

function report(id) {
    if (window.formView)
        window.formView.onFieldChanged(id);
}

// Runs an action once after all that happens in this turn.
function once(action) {
    let waiting = false;
    return () => {
        if (waiting)
            return;
        waiting = true;
        setTimeout(() => { waiting = false; action(); }, 0);
    };
}

// ---- Text fields: each has a twin that gives a text area its height and stands for the field
// on paper, where a field would cut its text off.

function addTwin(field) {
    const box = document.createElement("div");
    box.className = field.tagName === "TEXTAREA" ? "grow" : "line";
    field.parentNode.replaceChild(box, field);
    const twin = document.createElement("div");
    twin.className = "twin";
    twin.setAttribute("aria-hidden", "true");
    field.dir = twin.dir = "auto"; // as the text is written
    if (field.rows)
        twin.style.minHeight = field.rows * 1.5 + "em";
    twin.appendChild(document.createTextNode(""));
    box.appendChild(field);
    box.appendChild(twin);
    field.twin = twin;
    updateTwin(field);
}

function mayFillPage(text) {
    return text.length > PageText
        || text.length + LineText * text.split("\n").length > PageText;
}

function updateTwin(field) {
    if (!field.twin)
        return;
    const isEndless = EndlessWord.test(field.value);
    field.parentNode.classList.toggle("endless", isEndless);
    const text = isEndless ? field.value.replace(WordPart, "$&\u200b") : field.value;
    // A last line break needs something behind it to have a line of its own. A new node would end
    // what one undo takes back of what is typed.
    field.twin.firstChild.nodeValue = text + "\u200b";
    field.twin.parentNode.parentNode.classList.toggle("long", mayFillPage(field.value));
}

// Values written by the program fire no event.
function watchWrites(prototype) {
    const value = Object.getOwnPropertyDescriptor(prototype, "value");
    Object.defineProperty(prototype, "value", {
        configurable: true,
        enumerable: true,
        get: value.get,
        set(text) {
            if (String(text) === value.get.call(this))
                return; // what is typed comes back from the notes that follow the field
            value.set.call(this, text);
            this.reported = undefined;
            updateTwin(this);
            if (this.id === "titleImageFile")
                offerRemoval("");
            refresh();
        },
    });
}

// ---- News of what is typed

function onInput(event) {
    const field = event.target;
    if (!isTextField(field))
        return;
    field.reported = field.value;
    clearTimeout(field.pause);
    if (field.value.length > LongText)
        field.pause = setTimeout(() => updateTwin(field), 400);
    else
        updateTwin(field);
    report(field.id);
    refresh();
    field.classList.toggle("repaint"); // of a selection typed over, its upper edge would stay
}

// What has been told while it was typed is not told again when the field is left: the project
// may have been saved in between.
function onChange(event) {
    const field = event.target;
    if (isTextField(field) && field.reported === field.value)
        event.stopPropagation();
    refresh();
}

let leftField = null;

// Also when a dialog opens: what is typed is then told, and the dialog's button waits for its end.
function onWindowBlur() {
    leftField = document.activeElement === document.body ? null : document.activeElement;
    if (leftField)
        leftField.blur();
}

function onWindowFocus() {
    const field = leftField;
    leftField = null;
    if (!field || !document.body.contains(field) || document.activeElement !== document.body)
        return;
    const place = field.getBoundingClientRect();
    if (place.bottom > 0 && place.top < window.innerHeight)
        field.focus();
}

// The engine brings what has the focus to the window's edge, and the upper one lies below the bar.
function keepOffBar() {
    const element = document.activeElement;
    if (element === document.body || byId("bar").contains(element))
        return;
    const edge = byId("bar").offsetHeight + 34; // with room for the label
    const top = getCaretTop(element);
    if (top < edge)
        window.scrollBy(0, top - edge);
}

// Where the text cursor stands, for a field that may be higher than the window.
function getCaretTop(element) {
    const text = element.tagName === "TEXTAREA" && element.twin ? element.twin.firstChild : null;
    const range = document.createRange();
    if (text && text.length > LongText)
        return Infinity; // left to the engine
    if (text) {
        range.setStart(text, 0);
        range.setEnd(text, Math.min(element.selectionStart, text.length));
    }
    const lines = range.getClientRects();
    return (lines[lines.length - 1] || element.getBoundingClientRect()).top;
}

// ---- Steps

const sections = () => all(".step");

function openSteps(n) {
    sections().slice(0, Math.max(1, Number(n) || 1)).forEach(section => {
        section.style.display = "block";
    });
    refreshNow();
}

// The program's way, when a project is opened: it begins at its top.
function showStepsUpTo(n) {
    openSteps(n);
    window.scrollTo(0, 0);
}

// The user's way to a step: opens all up to it and remembers how far the form was opened.
function goToStep(n) {
    const field = byId("lastStepShown");
    openSteps(n);
    if (n > Number(field.value)) {
        field.value = String(n);
        report(field.id);
    }
    const section = sections()[n - 1];
    window.scrollTo(0, n > 1 ? section.offsetTop - SmallBar - 16 : 0);
    const first = section.querySelector("input[type=text]:not([readonly]), textarea, select");
    if (first)
        first.focus();
    onScroll();
}

// ---- What a search finds. The current field is brought into view, and its step opens without a
// word to the program.

function markFound(ids, current, lead) {
    all(".found").forEach(field => field.classList.remove("found"));
    all(".found-now").forEach(field => field.classList.remove("found-now"));
    ids.map(byId).filter(field => field).forEach(field => field.classList.add("found"));
    const field = byId(current);
    if (!field)
        return;
    field.classList.add("found-now");
    if (!lead)
        return;
    const step = sections().findIndex(section => section.contains(field));
    if (step >= 0 && !isShown(sections()[step]))
        openSteps(step + 1);
    if (document.hasFocus())
        field.focus();
    else
        leftField = field; // whoever closes the search goes on there
    const place = field.getBoundingClientRect();
    const edge = byId("bar").offsetHeight + 34;
    const middle = (window.innerHeight - place.height) / 2;
    if (place.top < edge || place.bottom > window.innerHeight)
        window.scrollBy(0, place.top - Math.max(edge, middle));
}

function isFilled(item) {
    return isTextField(item) ? item.value.trim() !== ""
                             : item.querySelector("input:checked") !== null;
}

const getNeeded = section => all("[data-needed]", section);
const getMissing = section => getNeeded(section).filter(item => !isFilled(item));
const isDone = section => getNeeded(section).length > 0 && getMissing(section).length === 0;

function markNeeded(root) {
    getNeeded(root).forEach(item => {
        const label = item.querySelector(".label") || root.querySelector("[for=\"" + item.id + "\"]");
        label.insertAdjacentHTML("beforeend", " <span class=\"needed\" aria-hidden=\"true\">*</span>");
        item.setAttribute("aria-required", "true");
    });
}

function describeStep(section) {
    const missing = getMissing(section).length;
    const title = section.dataset.title;
    return missing === 0 ? title : tr("%1, to be filled in: %2", title, missing);
}

function getCurrentStep() {
    const edge = byId("bar").offsetHeight + 60;
    let current = 0;
    sections().forEach((section, i) => {
        if (isShown(section) && section.getBoundingClientRect().top <= edge)
            current = i;
    });
    return current;
}

function onScroll() {
    byId("bar").classList.toggle("small", window.pageYOffset > 40);
    markPosition();
}

function markPosition() {
    const current = getCurrentStep();
    all("#progress li").forEach((item, i) => {
        item.classList.toggle("current", i === current);
        item.firstChild.setAttribute("aria-current", i === current ? "step" : "false");
    });
    byId("position").textContent = tr("Step %1 of %2: %3", current + 1, sections().length,
        sections()[current].dataset.title);
}

function refreshNow() {
    const list = sections();
    const items = all("#progress li");
    const last = list.map(isShown).lastIndexOf(true);
    list.forEach((section, i) => {
        const next = section.querySelector(".next");
        items[i].classList.toggle("open", isShown(section));
        items[i].classList.toggle("done", isDone(section));
        items[i].firstChild.title = describeStep(section);
        section.stub.style.display = isShown(section) || i > last ? "none" : "";
        if (next && list[i + 1])
            next.style.display = isShown(list[i + 1]) ? "none" : "";
    });
    byId("noCausalFactors").style.display = byId("causalFactors").firstChild ? "none" : "";
    markPosition();
}

const refresh = once(refreshNow);

function makeButton(text, className, action) {
    const button = document.createElement("button");
    button.type = "button";
    button.className = className;
    button.textContent = text;
    button.addEventListener("click", action);
    return button;
}

function buildSteps() {
    const list = sections();
    list.forEach((section, i) => {
        const title = section.dataset.title;
        const number = document.createElement("span");
        number.className = "step-number";
        number.textContent = i + 1;
        const head = section.querySelector(".step-head");
        head.insertBefore(number, head.firstChild);
        section.stub = makeButton((i + 1) + "  " + head.querySelector("h2").textContent, "stub",
            () => goToStep(i + 1));
        section.parentNode.insertBefore(section.stub, section);
        const item = document.createElement("li");
        const button = makeButton("", "progress-step", () => goToStep(i + 1));
        button.innerHTML = "<span class=\"dot\">" + (i + 1) + "</span><span class=\"name\"></span>";
        button.lastChild.textContent = title;
        item.appendChild(button);
        byId("progress").appendChild(item);
        if (i + 1 < list.length) {
            const next = document.createElement("div");
            next.className = "next";
            next.appendChild(makeButton(tr("Continue: %1", list[i + 1].dataset.title),
                "button primary", () => goToStep(i + 2)));
            section.appendChild(next);
        }
        // The program opens a step as soon as it writes into it.
        new MutationObserver(refresh).observe(section,
            { attributes: true, attributeFilter: ["style"] });
    });
}

// ---- Rows of causal factors

const getRow = number => byId("causalFactor-" + number);
const wireRows = once(() => window.formView && window.formView.addOnChangeHandlers());

function insertRow(number) {
    const html = byId("causalFactorTemplate").innerHTML.replace(/NUM/g, number);
    const holder = document.createElement("div");
    holder.innerHTML = html;
    const row = holder.querySelector(".factor");
    row.number = number;
    all("textarea, input[type=text]", row).forEach(addTwin);
    markNeeded(row);
    const rows = byId("causalFactors");
    const following = Array.from(rows.children).find(other => other.number > number);
    rows.insertBefore(row, following || null);
    refresh();
    return row;
}

function isRow(prefix, number) {
    return prefix === "causalFactor" && Number.isInteger(number) && number >= 0
        && number <= MaxNumber;
}

function addDynamicContent(prefix, guid, number) {
    if (!isRow(prefix, number))
        return "";
    if (!getRow(number))
        insertRow(number);
    byId("causalFactor_guid_" + number).value = guid;
    if (window.formView)
        window.formView.addOnChangeHandlers();
    return "causalFactor_" + number;
}

function removeDynamicContent(prefix, number) {
    const row = isRow(prefix, number) ? getRow(number) : null;
    if (row)
        row.parentNode.removeChild(row);
    refresh();
}

// Any id of a row makes the whole row, so that a stray one cannot stand in the way of the others.
function createNecessaryFields(id) {
    const parts = /^([A-Za-z]+)_[A-Za-z0-9-]*_([0-9]{1,9})$/.exec(id);
    const number = parts ? Number(parts[2]) : NaN;
    if (!parts || !isRow(parts[1], number) || getRow(number))
        return;
    insertRow(number);
    wireRows();
}

// ---- Title picture, print, export

function chooseTitleImage() {
    const field = byId("titleImageFile");
    const before = field.value;
    window.formView.onChooseImageClicked();
    if (field.value !== before)
        report(field.id);
}

let removedImage = ""; // comes back by the button that removed it

function offerRemoval(removed) {
    const button = byId("titleImageRemove");
    removedImage = removed;
    button.textContent = removed === "" ? tr("Remove") : tr("Put back");
    button.disabled = removed === "" && byId("titleImageFile").value === "";
}

/// A picture would take the place of what is selected and leave nothing there.
function onPaste(event) {
    if (!event.clipboardData.getData("text/plain"))
        event.preventDefault();
}

function removeTitleImage() {
    const field = byId("titleImageFile");
    const removed = field.value;
    field.value = removedImage;
    offerRemoval(removed);
    report(field.id);
}

// ---- Paper

let scrolledTo = null; // where the page stood before it was laid out for paper

function onPrintLayout(media) {
    if (!media.matches)
        setTimeout(scrollBack, 0);
    else if (scrolledTo === null)
        scrolledTo = window.pageYOffset;
}

function scrollBack() {
    if (scrolledTo !== null)
        window.scrollTo(0, scrolledTo);
    scrolledTo = null;
}

document.addEventListener("DOMContentLoaded", () => {
    translatePage();
    watchWrites(HTMLTextAreaElement.prototype);
    watchWrites(HTMLInputElement.prototype);
    all("textarea, input[type=text]").forEach(addTwin);
    markNeeded(document);
    buildSteps();
    document.addEventListener("input", onInput);
    document.addEventListener("change", onChange, true);
    document.addEventListener("paste", onPaste);
    document.addEventListener("click", refresh);
    window.addEventListener("blur", onWindowBlur);
    window.addEventListener("focus", onWindowFocus);
    window.addEventListener("scroll", onScroll);
    document.addEventListener("keyup", keepOffBar);
    matchMedia("print").addListener(onPrintLayout);
    byId("titleImageRemove").addEventListener("click", removeTitleImage);
    byId("printFormButton").addEventListener("click", () => window.formView.onPrintRequested());
    refreshNow();
});
