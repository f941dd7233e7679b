"use strict";

// The form's fields are its only state: the program reads and writes them by id. What this
// script adds is steps that open, rows of causal factors, and prompt news of what is typed.

delete window.WebSocket; // the one road to the network that is not the program's to close

const LongText = 20000; // from here on a twin costs more than the pace of typing allows
const MaxNumber = 999; // the highest number of a row that is made

const byId = id => document.getElementById(id);
const all = (selector, root) => Array.from((root || document).querySelectorAll(selector));
const isTextField = e => e.tagName === "TEXTAREA" || (e.tagName === "INPUT" && e.type === "text");
const isShown = section => section.style.display !== "none";

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
    if (field.rows)
        twin.style.minHeight = field.rows * 1.5 + "em";
    box.appendChild(field);
    box.appendChild(twin);
    field.twin = twin;
    updateTwin(field);
}

function updateTwin(field) {
    // A last line break needs something behind it to have a line of its own.
    if (field.twin)
        field.twin.textContent = field.value + "\u200b";
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

function onWindowBlur() {
    leftField = isTextField(document.activeElement) ? document.activeElement : null;
    if (document.activeElement)
        document.activeElement.blur();
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

// ---- Steps

const sections = () => all(".step");

function showStepsUpTo(n) {
    sections().slice(0, Math.max(1, Number(n) || 1)).forEach(section => {
        section.style.display = "block";
    });
    refreshNow();
}

// The user's way to a step: opens all up to it and remembers how far the form was opened.
function goToStep(n) {
    const field = byId("lastStepShown");
    showStepsUpTo(n);
    if (n > Number(field.value)) {
        field.value = String(n);
        report(field.id);
    }
    const section = sections()[n - 1];
    window.scrollTo(0, section.offsetTop - byId("bar").offsetHeight - 16);
    const first = section.querySelector("input[type=text]:not([readonly]), textarea, select");
    if (first)
        first.focus();
    markPosition();
}

function isFilled(item) {
    return isTextField(item) ? item.value.trim() !== ""
                             : item.querySelector("input:checked") !== null;
}

function isDone(section) {
    const needed = all("[data-needed]", section);
    return needed.length > 0 && needed.every(isFilled);
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

function markPosition() {
    const current = getCurrentStep();
    all("#progress li").forEach((item, i) => {
        item.classList.toggle("current", i === current);
        item.firstChild.setAttribute("aria-current", i === current ? "step" : "false");
    });
    byId("position").textContent = "Step " + (current + 1) + " of " + sections().length + ": "
        + sections()[current].dataset.title;
}

function refreshNow() {
    const list = sections();
    const items = all("#progress li");
    list.forEach((section, i) => {
        const next = section.querySelector(".next");
        items[i].classList.toggle("open", isShown(section));
        items[i].classList.toggle("done", isDone(section));
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
        section.querySelector(".step-head").insertBefore(number,
            section.querySelector(".step-head").firstChild);
        const item = document.createElement("li");
        const button = makeButton("", "progress-step", () => goToStep(i + 1));
        button.innerHTML = "<span class=\"dot\">" + (i + 1) + "</span><span class=\"name\"></span>";
        button.lastChild.textContent = title;
        button.title = title; // narrow windows show numbers alone
        item.appendChild(button);
        byId("progress").appendChild(item);
        if (i + 1 < list.length) {
            const next = document.createElement("div");
            next.className = "next";
            next.appendChild(makeButton("Continue: " + list[i + 1].dataset.title,
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

function removeTitleImage() {
    const field = byId("titleImageFile");
    if (field.value === "")
        return;
    field.value = "";
    report(field.id);
}

document.addEventListener("DOMContentLoaded", () => {
    watchWrites(HTMLTextAreaElement.prototype);
    watchWrites(HTMLInputElement.prototype);
    all("textarea, input[type=text]").forEach(addTwin);
    buildSteps();
    document.addEventListener("input", onInput);
    document.addEventListener("change", onChange, true);
    document.addEventListener("click", refresh);
    window.addEventListener("blur", onWindowBlur);
    window.addEventListener("focus", onWindowFocus);
    window.addEventListener("scroll", markPosition);
    byId("titleImageRemove").addEventListener("click", removeTitleImage);
    byId("printFormButton").addEventListener("click", () => window.formView.onPrintRequested());
    refreshNow();
});
