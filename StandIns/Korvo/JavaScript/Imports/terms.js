// Words that BibTeX and BibLaTeX have for kinds of theses, reports and patents, for countries and
// for the state of a publication, as they are to be printed.
export const genres = new Map(
  Object.entries({
    phdthesis: "PhD thesis",
    mathesis: "Master\u2019s thesis",
    mastersthesis: "Master\u2019s thesis",
    bathesis: "Bachelor\u2019s thesis",
    candthesis: "Candidate thesis",
    techreport: "Technical report",
    resreport: "Research report",
    software: "Computer software",
    datacd: "Data CD",
    audiocd: "Audio CD",
    patent: "Patent",
    patentde: "German patent",
    patenteu: "European patent",
    patentfr: "French patent",
    patentuk: "British patent",
    patentus: "U.S. patent",
    patreq: "Patent request",
    patreqde: "German patent request",
    patreqeu: "European patent request",
    patreqfr: "French patent request",
    patrequk: "British patent request",
    patrequs: "U.S. patent request",
  }),
);

const countries = {
  countryde: "Germany",
  countryep: "European Union",
  countryeu: "European Union",
  countryfr: "France",
  countryuk: "United Kingdom",
  countryus: "United States of America",
  countrywo: "WIPO",
};

export const placeOf = (name) => countries[name.toLowerCase()] ?? name;

const states = { inpreparation: "in preparation", inpress: "in press" };

export const stateOf = (name) => states[name.toLowerCase()] ?? name;
