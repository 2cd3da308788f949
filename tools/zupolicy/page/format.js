// Texts for people and for shells.
const Format = (() => {
  // What could move a cursor, turn the writing direction, break a line or be invisible.
  const HIDDEN = /[\p{Cc}\p{Cf}\p{Zl}\p{Zp}\u115f\u1160\u3164\uffa0]/u;
  const SHORT = {"\n": "\\n", "\r": "\\r", "\t": "\\t"};
  const LONGEST_IN_ROW = 300;

  function escapeOf(character) {
    const hex = character.codePointAt(0).toString(16);
    return SHORT[character] ?? (hex.length > 4 ? `\\U${hex.padStart(8, "0")}` : `\\u${hex.padStart(4, "0")}`);
  }

  // A text as nodes, with marked escapes for what nobody would see.
  function visible(text, longest = Infinity) {
    const cut = text.length > longest ? text.slice(0, longest) : text;
    const nodes = [];
    let plain = "";
    for (const character of HIDDEN.test(cut) ? cut : []) {
      if (HIDDEN.test(character)) {
        nodes.push(plain, Dom.make("span", {class: "escape"}, escapeOf(character)));
        plain = "";
      } else {
        plain += character;
      }
    }
    nodes.push(nodes.length > 0 || plain !== "" ? plain : cut);
    if (cut !== text) {
      nodes.push(Dom.make("span", {class: "escape"}, "\u2026"));
    }
    return nodes;
  }
  const plain = (text) => [...text].map((character) => HIDDEN.test(character) ? escapeOf(character) : character).join("");

  // A value in a row.
  function value(text) {
    return text === "" ? Dom.make("span", {class: "none"}, "(empty)")
      : Dom.make("span", {class: "value", dir: "auto"}, visible(text, LONGEST_IN_ROW));
  }

  // Versions are time stamps in GMT: "20240311081500" is "2024-03-11 08:15:00 GMT". Null for any other number.
  function date(version) {
    const parts = /^(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d)$/.exec(version);
    if (parts === null) {
      return null;
    }
    const [year, month, day, hour, minute, second] = parts.slice(1).map(Number);
    const time = new Date(Date.UTC(year, month - 1, day, hour, minute, second));
    const isReal = time.getUTCFullYear() === year && time.getUTCMonth() === month - 1 && hour < 24 && minute < 60 &&
      second < 60;
    return isReal ? `${time.toISOString().slice(0, 19).replace("T", " ")} GMT` : null;
  }
  // A version as a date, with the number itself.
  function version(text) {
    const when = date(text);
    return Dom.make("span", {class: "version"}, when === null ? value(text)
      : [Dom.make("time", {datetime: when.replace(" GMT", "Z").replace(" ", "T")}, when), " ",
        Dom.make("span", {class: "raw"}, text)]);
  }

  const number = (count) => count.toLocaleString("en");
  const counted = (count, one, many) => `${number(count)} ${count === 1 ? one : many}`;

  // A word of a POSIX shell. Control and format characters are written as escapes, because a terminal acts on some of
  // them when a command is pasted.
  function posixWord(text) {
    if (/^[A-Za-z0-9_.,:@%+/-]+$/.test(text)) {
      return text;
    }
    if (!HIDDEN.test(text)) {
      return `'${text.replaceAll("'", "'\\''")}'`;
    }
    const octal = (character) => [...new TextEncoder().encode(character)]
      .map((byte) => `\\${byte.toString(8).padStart(3, "0")}`).join("");
    const escaped = [...text].map((character) =>
      HIDDEN.test(character) ? octal(character) : character.replace(/['\\]/, "\\$&"));
    return `$'${escaped.join("")}'`;
  }
  // The same for PowerShell, which takes typographic quotes for quotes.
  function powershellWord(text) {
    if (/^[A-Za-z0-9_.:\\/][A-Za-z0-9_.:\\/-]*$/.test(text)) {
      return text;
    }
    const quoted = (part) => `'${part.replace(/['\u2018-\u201b]/g, "$&$&")}'`;
    if (!HIDDEN.test(text)) {
      return quoted(text);
    }
    const parts = [...text].map((character) => !HIDDEN.test(character) ? quoted(character)
      : character.split("").map((unit) => `[char]0x${unit.charCodeAt(0).toString(16)}`).join(" + "));
    return `('' + ${parts.join(" + ")})`;
  }

  let shell = Data.raw.shell;
  const word = (text) => shell === "powershell" ? powershellWord(text) : posixWord(text);

  // A command line; after "--" arguments may begin with a dash.
  function command(name, taskId, positional) {
    const task = taskId === null ? [] : taskId.startsWith("-") ? [word(`--task=${taskId}`)] : ["--task", word(taskId)];
    const words = positional.map(word);
    return positional.some((text) => text.startsWith("-"))
      ? ["zupolicy", name, ...task, "--", ...words].join(" ")
      : ["zupolicy", name, ...words, ...task].join(" ");
  }

  return {visible, plain, value, date, version, number, counted, posixWord, powershellWord, word, command,
    get shell() { return shell; }, set shell(name) { shell = name; }};
})();
