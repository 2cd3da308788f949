// What the page is about: the embedded tables, and what follows from them.
const Data = (() => {
  const raw = JSON.parse(document.getElementById("data").textContent);
  const VERSION = 0;
  const FIELD = 1;
  const SECTION = 2;
  const SETTING = 3;
  // The state of a file that does not have a key.
  const MISSING = -1;
  const FIELD_NAMES = {displayName: "Display name", type: "Type", platforms: "Platforms", priority: "Priority",
    creator: "Creator"};

  const {texts, files} = raw;
  const entries = raw.entries.map(([softwareId, taskId]) => ({
    softwareId: texts[softwareId],
    taskId: taskId === undefined ? null : texts[taskId],
    idTexts: taskId === undefined ? [softwareId] : [softwareId, taskId],
  }));
  const keys = raw.keys.map(([entry, kind, section, name, hidden]) =>
    ({entry, kind, section, name, isHidden: hidden === 1}));
  const isReadable = (file) => file.error === undefined;
  const readable = files.filter(isReadable).length;

  const keysOf = (file) => isReadable(file) ? raw.shapes[file.shape] : [];
  const valuesOf = (file) => isReadable(file) ? file.values : [];

  function entryLabel(entry) {
    const {softwareId, taskId} = entries[entry];
    return taskId === null ? softwareId : `${softwareId} ${taskId}`;
  }
  function keyName(key) {
    const {kind, section, name} = keys[key];
    if (kind === FIELD) {
      return FIELD_NAMES[texts[name]];
    }
    return kind === SECTION ? texts[section] : `${texts[section]}/${texts[name]}`;
  }
  const keyTexts = (key) => [...entries[keys[key].entry].idTexts, keys[key].section, keys[key].name];

  // For each key: how many files have which value, and which state most files are in. Versions differ in any case.
  function distribute() {
    const counts = keys.map(() => new Map());
    for (const file of files) {
      const shape = keysOf(file);
      const values = valuesOf(file);
      for (let i = 0; i < shape.length; ++i) {
        const count = counts[shape[i]];
        count.set(values[i], (count.get(values[i]) ?? 0) + 1);
      }
    }
    return counts.map((count, key) => {
      let present = 0;
      let common = MISSING;
      let most = 0;
      for (const [value, number] of count) {
        present += number;
        if (number > most) {
          [common, most] = [value, number];
        }
      }
      const missing = readable - present;
      if (missing > most) {
        [common, most] = [MISSING, missing];
      }
      // What has no value that most files share varies by its nature: none of its values is an outlier.
      const varies = 2 * most <= readable && readable > 1 && keys[key].kind !== VERSION;
      return {key, count, missing, common, most, varies,
        outliers: varies || keys[key].kind === VERSION ? 0 : readable - most};
    });
  }
  const distributions = distribute();

  // The keys of each entry that most files have.
  const expected = entries.map(() => []);
  for (const {key, common, varies} of distributions) {
    if (common !== MISSING && !varies && keys[key].kind !== VERSION) {
      expected[keys[key].entry].push(key);
    }
  }

  // What a shape has: its entries, and for each of them the number of expected keys that it lacks.
  const shapeFacts = new Map();
  function factsOfShape(shape) {
    if (!shapeFacts.has(shape)) {
      const has = new Set(raw.shapes[shape]);
      const lacking = new Map();
      for (const key of has) {
        if (keys[key].kind === VERSION) {
          lacking.set(keys[key].entry, expected[keys[key].entry].filter((wanted) => !has.has(wanted)).length);
        }
      }
      shapeFacts.set(shape, lacking);
    }
    return shapeFacts.get(shape);
  }

  const isOutlier = (key, value) => distributions[key].outliers > 0 && distributions[key].common !== value;

  // For each entry of a file the number of its keys that are not as in most files.
  function outliersByEntry(file) {
    const result = new Map(factsOfShape(file.shape));
    const shape = keysOf(file);
    for (let i = 0; i < shape.length; ++i) {
      if (isOutlier(shape[i], file.values[i])) {
        result.set(keys[shape[i]].entry, result.get(keys[shape[i]].entry) + 1);
      }
    }
    return result;
  }
  const entryFiles = entries.map(() => 0);
  for (const {key, missing} of distributions) {
    if (keys[key].kind === VERSION) {
      entryFiles[keys[key].entry] = readable - missing;
    }
  }
  const isUsual = (entry) => 2 * entryFiles[entry] > readable;
  const usualEntries = entries.map((_, entry) => entry).filter(isUsual);
  function outliersOf(file) {
    if (!isReadable(file)) {
      return 0;
    }
    const mine = outliersByEntry(file);
    let sum = 0;
    for (const number of mine.values()) {
      sum += number;
    }
    for (const entry of usualEntries) {
      sum += mine.has(entry) ? 0 : 1;
    }
    return sum;
  }

  // The state of a file: the number of its value, or MISSING.
  function stateOf(file, key) {
    const at = keysOf(file).indexOf(key);
    return at < 0 ? MISSING : file.values[at];
  }

  // A test of texts, by their numbers: each word of the query is in one of them.
  function matcher(query) {
    const words = query.toLowerCase().split(/\s+/).filter((word) => word !== "").map((word) => {
      const known = new Map();
      return (text) => {
        let has = known.get(text);
        if (has === undefined) {
          has = texts[text].toLowerCase().includes(word);
          known.set(text, has);
        }
        return has;
      };
    });
    return words.length === 0 ? null : (numbers) => words.every((has) => numbers.some(has));
  }

  // All problems: files that cannot be read, then what breaks a rule, then warnings.
  function problems() {
    const list = [];
    files.forEach((file, number) => {
      if (!isReadable(file)) {
        const {line, column, message, name, hint} = file.error;
        const code = name === null ? "" : ` [${name}]`;
        list.push({rank: 0, file: number, line, column, message: message + code + (hint === null ? "" : `; ${hint}`)});
      }
      for (const [severity, line, column, message] of file.problems ?? []) {
        list.push({rank: 1 + severity, file: number, line, column, message});
      }
      if (file.moreProblems > 0) {
        list.push({rank: 3, file: number, line: null, column: null,
          message: `${file.moreProblems} more; "zupolicy check" prints them all`});
      }
    });
    return list.sort((one, other) => one.rank - other.rank);
  }

  const isDifferences = raw.kind === "differences";
  return {VERSION, FIELD, SECTION, SETTING, MISSING, FIELD_NAMES, raw, texts, files, entries, keys, readable, isReadable,
    keysOf, valuesOf, entryLabel, keyName, keyTexts, distributions, isOutlier, outliersByEntry, outliersOf, stateOf,
    isUsual, entryFiles, matcher, problems: problems(), isDifferences, isMany: !isDifferences && files.length > 1};
})();
