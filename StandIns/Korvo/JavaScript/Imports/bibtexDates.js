// Dates: BibLaTeX's, which are ISO 8601 with years before our era and doubts, and BibTeX's year,
// month and day, which are whatever people write.
import { latexText, verbatimText } from "./latexText.js";

const monthNames =
  "january february march april may june july august september october november december".split(
    " ",
  );
const seasonNames = ["spring", "summer", "autumn", "winter"];

// "jan", "Sept.", "August" as 1 to 12.
function monthOf(word) {
  const letters = word.toLowerCase().replace(/\.$/, "");
  return letters.length < 3
    ? 0
    : monthNames.findIndex((name) => name.startsWith(letters)) + 1 || (letters === "sept" ? 9 : 0);
}

function seasonOf(word) {
  const letters = word.toLowerCase();
  return seasonNames.indexOf(letters === "fall" ? "autumn" : letters) + 1;
}

const isoDate =
  /^(-?\d{4}|Y-?\d{5,}|\d{2,3}X{1,2})(?:-(\d\d|uu|XX)(?:-(\d\d|uu|XX))?)?(?:T\S*)?\s*([?~%]?)$/;

// ISO 8601 has a year 0; in history 1 BC goes before 1 AD.
const historicYear = (year) => (year <= 0 ? year - 1 : year);

function isoParts(text) {
  const [, yearText, monthText, dayText, doubt] = isoDate.exec(text.trim()) ?? [];
  if (!yearText) {
    return undefined;
  }
  const year = historicYear(Number(yearText.replace("Y", "").replaceAll("X", "0")));
  const month = Number(monthText) || 0;
  const circa = doubt === "~" || doubt === "%";
  if (month > 20 && month < 25) {
    return { parts: [year], season: month - 20, circa };
  }
  const isMonth = month >= 1 && month <= 12;
  const day = Number(dayText) || 0;
  const parts = isMonth ? (day >= 1 && day <= 31 ? [year, month, day] : [year, month]) : [year];
  const end = yearText.includes("X") ? [Number(yearText.replaceAll("X", "9"))] : undefined;
  return { parts, end, circa };
}

function dateFrom(first, last) {
  const parts = [first.parts, ...(last ? [last.parts] : first.end ? [first.end] : [])];
  return {
    "date-parts": parts,
    ...(first.season ? { season: first.season } : {}),
    ...(first.circa || last?.circa ? { circa: true } : {}),
  };
}

// A text that is no such date stays a text.
export function dateOf(source) {
  // As it stands: "~" is a doubt.
  const [start, end = "", ...more] = verbatimText(source).split("/");
  const first = more.length === 0 ? isoParts(start) : undefined;
  const last = isoParts(end);
  const isOpen = /^(\.\.)?$/.test(end.trim());
  if (first && (last || isOpen)) {
    return dateFrom(first, last);
  }
  const text = latexText(source);
  const year = yearOf(text);
  return year ? { "date-parts": year } : { literal: text };
}

const beforeOurEra = /\s*\(?\b(?:B\.?\s?C\.?(?:\s?E\.?)?|v\.\s?Chr\.?)\)?$/i;

// The years of "2001", "2001--2003", "44 BC" as date parts.
function yearOf(text) {
  const era = beforeOurEra.exec(text);
  const years = (era ? text.slice(0, era.index) : text).trim();
  const [, first, last] = /^(-?\d{1,4})(?:\s*[-/\u2013\u2014]\s*(\d{4}))?\.?$/.exec(years) ?? [];
  if (!first) {
    return undefined;
  }
  return [first, last].filter(Boolean).map((year) => [Number(year) * (era ? -1 : 1)]);
}

// Months and days out of "May", "5", "8 May", "May 8--10", "May/June", "Spring".
function monthsOf(text) {
  const words = text.match(/\p{L}+\.?|\d+/gu) ?? [];
  const months = words.map(monthOf).filter(Boolean);
  const numbers = words.filter((word) => /^\d+$/.test(word)).map(Number);
  const season = words.map(seasonOf).find(Boolean);
  if (months.length > 0) {
    return { months, days: numbers.filter((day) => day >= 1 && day <= 31) };
  }
  return {
    months: numbers.filter((month) => month >= 1 && month <= 12).slice(0, 1),
    days: [],
    season,
  };
}

// Gives { date, isMonthLost }.
export function dateOfParts(yearSource, monthSource, daySource) {
  const text = latexText(yearSource);
  const years = yearOf(text);
  if (!years) {
    return { date: { literal: text }, isMonthLost: false };
  }
  const monthText = latexText(monthSource);
  const { months, days, season } = monthsOf(monthText);
  const date = { "date-parts": years };
  if (years.length === 1 && months.length > 0) {
    const [[year]] = years;
    const day = days[0] ?? Number(/^\d{1,2}$/.exec(latexText(daySource))?.[0] ?? 0);
    const first = [year, months[0], ...(day ? [day] : [])];
    const isRange = months.length > 1 || days.length > 1;
    const last = [year, months.at(-1), ...(days.length > 0 ? [days.at(-1)] : [])];
    date["date-parts"] = isRange ? [first, last] : [first];
  } else if (years.length === 1 && season) {
    date.season = season;
  }
  return { date, isMonthLost: monthText !== "" && months.length === 0 && !season };
}
