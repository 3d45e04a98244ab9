// What LaTeX's commands print, as far as names, titles and notes use them: citation-js's tables,
// and what they lack.
import {
  commands as symbols,
  diacritics,
  formattingCommands,
  formattingEnvs,
  mathCommands,
} from "@citation-js/plugin-bibtex/lib-mjs/input/constants.js";

const table = (entries) => new Map(Object.entries(entries));
const all = (names, value) => names.split(" ").map((name) => [name, value]);

// Combining characters, which follow the letter that they stand on.
export const accentOf = table({
  ...diacritics,
  b: "\u0331",
  // The same in formulas.
  acute: "\u0301",
  bar: "\u0304",
  breve: "\u0306",
  check: "\u030c",
  ddot: "\u0308",
  dot: "\u0307",
  grave: "\u0300",
  hat: "\u0302",
  mathring: "\u030a",
  overline: "\u0305",
  tilde: "\u0303",
  vec: "\u20d7",
  widehat: "\u0302",
  widetilde: "\u0303",
});

// Accents that stand on nothing.
export const bareAccentOf = table({
  "`": "`",
  "'": "\u00b4",
  "^": "^",
  "~": "~",
  '"': "\u00a8",
  "=": "\u00af",
  ".": "\u02d9",
  c: "\u00b8",
  H: "\u02dd",
  k: "\u02db",
  r: "\u02da",
  u: "\u02d8",
  v: "\u02c7",
});

const functionNames =
  "arccos arcsin arctan arg bmod cos cosh cot coth csc deg det dim exp gcd hom inf ker lg lim " +
  "liminf limsup ln log max min mod pmod sec sin sinh sup tan tanh";

// Where a word may be broken or two letters are not joined; sizes, faces and heights.
const silent =
  "! * / @ - + ( ) [ ] aftergroup allowbreak bgroup big Big bigg Bigg bigl Bigl bigr Bigr egroup " +
  "displaystyle footnotesize frenchspacing huge Huge ignorespaces large Large LARGE left " +
  "leavevmode limits mathstrut mdseries noindent nobreak nocorr nolimits normalfont normalsize " +
  "null protect relax rmfamily right scriptsize scriptstyle selectfont sffamily sloppy small " +
  "string strut textnormal textstyle tiny ttfamily unskip upshape xspace";

const blanks =
  "\\ \n \r \t : ; > enskip linebreak medspace newline par qquad quad space thickspace";

export const symbolOf = new Map([
  ...Object.entries(mathCommands),
  ...Object.entries(symbols),
  ...functionNames.split(" ").map((name) => [name, name]),
  ...all(silent, ""),
  ...all(blanks, " "),
  [" ", " "],
  [",", "\u202f"],
  ["thinspace", "\u202f"],
  ...table({
    aa: "\u00e5",
    AA: "\u00c5",
    aleph: "\u2135",
    AmS: "AMS",
    and: "and",
    approx: "\u2248",
    ast: "\u2217",
    backslash: "\\",
    BibLaTeX: "BibLaTeX",
    BibTeX: "BibTeX",
    bullet: "\u2022",
    cap: "\u2229",
    cdot: "\u22c5",
    cdots: "\u22ef",
    circ: "\u2218",
    cong: "\u2245",
    cup: "\u222a",
    dag: "\u2020",
    Dash: "\u2014",
    dagger: "\u2020",
    ddag: "\u2021",
    degree: "\u00b0",
    dots: "\u2026",
    downarrow: "\u2193",
    ell: "\u2113",
    emptyset: "\u2205",
    equiv: "\u2261",
    EUR: "\u20ac",
    euro: "\u20ac",
    exists: "\u2203",
    flqq: "\u00ab",
    forall: "\u2200",
    frqq: "\u00bb",
    ge: "\u2265",
    geq: "\u2265",
    gg: "\u226b",
    glqq: "\u201e",
    grqq: "\u201c",
    hbar: "\u210f",
    hyp: "-",
    hyphen: "-",
    in: "\u2208",
    infty: "\u221e",
    int: "\u222b",
    langle: "\u27e8",
    LaTeX: "LaTeX",
    LaTeXe: "LaTeX2\u03b5",
    lbrace: "{",
    ldots: "\u2026",
    le: "\u2264",
    leftarrow: "\u2190",
    leftrightarrow: "\u2194",
    leq: "\u2264",
    ll: "\u226a",
    lq: "\u2018",
    LuaTeX: "LuaTeX",
    mapsto: "\u21a6",
    METAFONT: "Metafont",
    MF: "Metafont",
    mid: "\u2223",
    mp: "\u2213",
    nabla: "\u2207",
    ne: "\u2260",
    neg: "\u00ac",
    neq: "\u2260",
    nobreakdash: "-",
    nobreakspace: "\u00a0",
    notin: "\u2209",
    odot: "\u2299",
    oplus: "\u2295",
    otimes: "\u2297",
    P: "\u00b6",
    parallel: "\u2225",
    partial: "\u2202",
    perp: "\u22a5",
    pm: "\u00b1",
    pounds: "\u00a3",
    prime: "\u2032",
    prod: "\u220f",
    psq: " sq.",
    psqq: " sqq.",
    rangle: "\u27e9",
    rbrace: "}",
    rightarrow: "\u2192",
    Rightarrow: "\u21d2",
    rq: "\u2019",
    S: "\u00a7",
    setminus: "\u2216",
    sim: "\u223c",
    simeq: "\u2243",
    slash: "/",
    star: "\u22c6",
    subset: "\u2282",
    subseteq: "\u2286",
    sum: "\u2211",
    supset: "\u2283",
    TeX: "TeX",
    times: "\u00d7",
    to: "\u2192",
    uparrow: "\u2191",
    vee: "\u2228",
    Vert: "\u2016",
    vert: "|",
    wedge: "\u2227",
    XeTeX: "XeTeX",
  }),
]);

// Whose argument is printed as it is.
const plain =
  "acro bibfnamefont bibnamefont bibstring bm boldsymbol ensuremath fbox hbox lowercase makebox " +
  "MakeLowercase MakeUppercase mathbb mathbf mathcal mathfrak mathit mathnormal mathop mathrm " +
  "mathscr mathsf mathtt mbox mkbibname mkbibparens NoCaseChange operatorname text textlf " +
  "textnormal textup uline underline uppercase";

// The face in which an argument is printed, if any; the rest of a group after a command.
export const faceOf = new Map([...all(plain, undefined), ...Object.entries(formattingCommands)]);
export const faceOfRest = table(formattingEnvs);

export const verbatimCommands = new Set(["nolinkurl", "path", "url"]);

// What is made of the arguments of commands that have several, or print none.
export const printerOf = table({
  bibinfo: (kind, text) => text,
  color: (name) => name && "",
  ElsevierGlyph: (code) => String.fromCharCode(Number.parseInt(code, 16) || 0xfffd),
  foreignlanguage: (language, text) => text,
  frac: (over, under) => `${over}/${under}`,
  href: (address, text) => text,
  hspace: (width) => width && "",
  // Only sorts.
  noopsort: (order) => order && "",
  SortNoop: (order) => order && "",
  sqrt: (text) => `\u221a${text}`,
  textcolor: (name, text) => text,
  vphantom: (height) => height && "",
  vspace: (height) => height && "",
});
