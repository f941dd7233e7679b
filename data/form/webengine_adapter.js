"use strict";

// The program's side of the form's page where the page lives in a process of its own. The program
// keeps a mirror of the fields: the page tells it what changes, and takes what the program writes.

(() => {

// Roads to the network that are not the program's to close.
["WebSocket", "WebSocketStream", "WebTransport", "RTCPeerConnection", "webkitRTCPeerConnection"]
    .forEach(name => delete window[name]);

const { transport, isTop } = takeTransport();
if (!isTop)
    return;

const Selectors = ["INPUT[type=radio]", "INPUT[type=text]", "INPUT[type=file]",
    "INPUT[type=hidden]", "TEXTAREA", "SELECT"]; // in the order of the program's kinds
const Radio = 0, File = 2, Hidden = 3, Choice = 5;

const known = new Map(); // what the program knows of each field, by id
let lastWrite = 0; // the number of the program's last message
let shared = ""; // the text that program and page share
let chosen = null; // waits for the end of the picture's dialog
let isForm = false; // and not a document that a script has put in its place
let rowsChanged = false; // by the message at hand

const byId = id => document.getElementById(id);
const kindOf = field => Selectors.findIndex(selector => field.matches(selector));

function takeTransport() {
    const isTop = window === window.top;
    const transport = isTop ? window.qt.webChannelTransport : null;
    delete window.qt; // scripts see the form's slots and nothing else
    return { transport, isTop };
}

function tell(name, ...rest) {
    const text = JSON.stringify([name, lastWrite, ...rest]);
    transport.send(JSON.stringify(
        { type: 6, id: 0, object: "page", method: "tell", args: [text] }));
}

function read(field) {
    if (kindOf(field) === Radio)
        return String(field.checked);
    if (kindOf(field) !== Choice)
        return field.value;
    return field.selectedIndex < 0 ? "" : field.options[field.selectedIndex].text;
}

function getFields() {
    const fields = new Map();
    document.querySelectorAll(Selectors.join()).forEach(field => fields.set(field.id, field));
    return fields;
}

function describe(field, place) {
    const label = field.labels && field.labels[0];
    return {
        id: field.id,
        kind: kindOf(field),
        value: read(field),
        group: kindOf(field) === Radio ? field.name : "",
        options: kindOf(field) === Choice ? Array.from(field.options, option => option.text) : [],
        label: label ? label.textContent.replace(/[\s*]+/g, " ").trim() : field.id,
        place,
    };
}

// The fields whose text the program doesn't know, as pairs of id and text.
function noteChanges(fields) {
    const changes = fields.map(field => [field.id, read(field)])
        .filter(([id, text]) => known.get(id) !== text);
    changes.forEach(([id, text]) => known.set(id, text));
    return changes;
}

// A checked radio button unchecks the others of its group.
function getGroup(field) {
    return kindOf(field) === Radio && field.name
        ? Array.from(document.getElementsByName(field.name)).filter(e => kindOf(e) === Radio)
        : [field];
}

// All that differs from what the program knows, whoever changed it.
function tellAll(refused) {
    const fields = getFields();
    if (fields.size === 0)
        return; // whatever emptied the page does not empty the form
    const come = Array.from(fields.values())
        .map((field, place) => known.has(field.id) ? null : describe(field, place))
        .filter(field => field);
    come.forEach(field => known.set(field.id, field.value));
    const gone = Array.from(known.keys()).filter(id => !fields.has(id));
    gone.forEach(id => known.delete(id));
    const changes = refused.concat(noteChanges(Array.from(fields.values())));
    if (come.length + gone.length + changes.length > 0)
        tell("fields", come, gone, changes);
}

function reveal(field) {
    if (field.tagName === "TEXTAREA")
        field.disabled = false;
    for (let e = field.parentElement; e; e = e.parentElement) {
        if (e.style.display === "none")
            e.style.display = "block";
    }
}

function set(id, text) {
    const field = byId(id);
    const kind = field ? kindOf(field) : File;
    if (kind < 0 || kind === File)
        return []; // a file cannot be chosen by a script
    if (kind === Radio)
        field.checked = text === "true";
    else if (kind === Choice)
        field.selectedIndex = Array.from(field.options, option => option.text).lastIndexOf(text);
    else {
        field.value = text;
        if (text !== "")
            reveal(field);
    }
    getGroup(field).forEach(e => known.set(e.id, read(e)));
    return read(field) === text ? [] : [[id, read(field)]]; // a page may have rules of its own
}

function changeRows(action) {
    rowsChanged = true;
    action();
}

const Actions = {
    write: (id, text) => set(id, text),
    writes: pairs => pairs.flatMap(([id, text]) => set(id, text)),
    // What is typed comes back from the notes; it may not overwrite what was typed since.
    echo: (id, heard, text) => byId(id) && read(byId(id)) === heard ? set(id, text) : [],
    rows: ids => changeRows(() => ids.forEach(id => window.createNecessaryFields(id))),
    addRow: (guid, n) => changeRows(() => window.addDynamicContent("causalFactor", guid, n)),
    removeRow: n => changeRows(() => window.removeDynamicContent("causalFactor", n)),
    steps: number => { window.showStepsUpTo(number); },
    found: (ids, current, lead) => { window.markFound(ids, current, lead); },
    wire,
    focus: id => { byId(id) && byId(id).focus(); },
    share: text => { shared = text; },
    chosen: () => { chosen && chosen(); },
    picture: address => {
        const preview = byId("titleImagePreview");
        if (preview && address === "")
            preview.removeAttribute("src");
        else if (preview)
            preview.src = address;
    },
};

// Messages of the program, each with its number.
function take(number, actions) {
    lastWrite = number;
    rowsChanged = false;
    const refused = actions.flatMap(([name, ...rest]) => {
        try {
            return Actions[name](...rest) || [];
        } catch (error) {
            console.log(name + ": " + error); // a page may lack one of its functions
            return [];
        }
    });
    if (rowsChanged)
        tellAll(refused);
    else if (refused.length > 0)
        tell("fields", [], [], refused);
    return isForm;
}

function wire() {
    const give = (element, attribute, script) => {
        if (element && !element.hasAttribute(attribute))
            element.setAttribute(attribute, script);
    };
    getFields().forEach(field => {
        if (kindOf(field) !== Hidden)
            give(field, kindOf(field) === Radio ? "onclick" : "onchange",
                "window.formView.onFieldChanged(this.id);");
    });
    give(byId("exportFormButton"), "onclick", "window.formView.onExportFormClicked();");
    give(byId("titleImageButton"), "onclick", "window.formView.onChooseImageClicked();");
}

function onFieldChanged(id) {
    const field = byId(id);
    tell("edited", String(id), field && kindOf(field) >= 0 ? noteChanges(getGroup(field)) : []);
}

const formView = Object.freeze({
    get sharedString() { return shared; },
    set sharedString(text) { shared = String(text); tell("share", shared); },
    onFieldChanged,
    addOnChangeHandlers: wire,
    onPrintRequested: () => tell("print"),
    removeCausalFactor: number => tell("remove", Math.trunc(Number(number)) || 0),
    onExportFormClicked: () => tell("export"),
    // Kept when the dialog is closed and the field holds what was chosen.
    onChooseImageClicked: () => new Promise(done => { chosen = done; tell("image"); }),
});
Object.defineProperty(window, "formView", { value: formView });
Object.defineProperty(window, "takeFromProgram", { value: take });

// The program sends such a key behind all that was typed, and waits for the answer. The page, which
// brings the focus into view on a key, hears neither its press nor its release.
const isAsking = event => /^F(1[3-9]|2[0-4])$/.test(event.key);
window.addEventListener("keyup", event => {
    if (isAsking(event))
        event.stopImmediatePropagation();
}, true);
window.addEventListener("keydown", event => {
    if (!isAsking(event))
        return;
    event.preventDefault();
    event.stopImmediatePropagation();
    tellAll([]);
    tell("settled", event.key);
}, true);

window.addEventListener("wheel", event => {
    if (event.ctrlKey)
        event.preventDefault(); // the engine would zoom
}, { passive: false, capture: true });

window.addEventListener("load", () => {
    // Paper is laid out wider by a quarter and shrunk, as its style sheet says.
    const style = document.createElement("style");
    style.textContent = "@media print { :root { zoom: 0.8; } }";
    document.head.appendChild(style);
    const fields = Array.from(getFields().values(), describe);
    fields.forEach(field => known.set(field.id, field.value));
    isForm = fields.length > 0;
    const others = Array.from(document.querySelectorAll("[id]"), element => element.id);
    tell("ready", fields, others.filter(id => !known.has(id)));
});

})();
