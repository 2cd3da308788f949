// Builds elements. Every text goes into the page as text: nothing here parses HTML.
const Dom = (() => {
  function append(element, children) {
    for (const child of children.flat(Infinity)) {
      if (child !== null && child !== undefined) {
        element.append(child);
      }
    }
  }

  // make("button", {class: "plain", type: "button", onclick: action}, "Copy")
  function make(name, attributes = {}, ...children) {
    const element = document.createElement(name);
    for (const [attribute, value] of Object.entries(attributes)) {
      if (attribute.startsWith("on")) {
        element.addEventListener(attribute.slice(2), value);
      } else if (value !== null && value !== undefined) {
        element.setAttribute(attribute, value);
      }
    }
    append(element, children);
    return element;
  }

  function fill(element, ...children) {
    element.replaceChildren();
    append(element, children);
    return element;
  }

  function button(label, action, className = "plain") {
    return make("button", {type: "button", class: className, onclick: action}, label);
  }

  // A list of choices with a label; `choices` are pairs of a value and a text.
  function select(label, choices, change) {
    const list = make("select", {onchange: () => change(list.value)},
      choices.map(([value, text]) => make("option", {value}, text)));
    return make("label", {class: "choice"}, make("span", {}, label), list);
  }

  // Says something to everybody: a short message that a screen reader reads, too.
  let timer = 0;
  function announce(text) {
    const status = document.getElementById("status");
    status.textContent = text;
    status.classList.add("shown");
    clearTimeout(timer);
    timer = setTimeout(() => status.classList.remove("shown"), 4000);
  }

  async function copy(text, what) {
    try {
      await navigator.clipboard.writeText(text);
    } catch {
      const area = make("textarea", {class: "hidden", "aria-hidden": "true"});
      area.value = text;
      document.body.append(area);
      area.select();
      const done = document.execCommand("copy");
      area.remove();
      if (!done) {
        announce("The browser does not allow copying. Mark the text and copy it by hand.");
        return;
      }
    }
    announce(`Copied: ${what}`);
  }

  return {make, fill, button, select, announce, copy};
})();
