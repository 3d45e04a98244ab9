// Converts many entries with a converter that fails as a whole when one of them is broken.
//
// All at once is what a sound file needs. Where that fails, halves are tried, and halves
// of these, until the broken entries are alone: a few broken ones in many cost little.

function firstLine(error) {
  return String(error?.message ?? error).split("\n")[0];
}

function findBroken(entries, convert, broken) {
  try {
    convert(entries);
  } catch (error) {
    if (entries.length === 1) {
      broken.set(entries[0], firstLine(error));
      return;
    }
    const middle = entries.length >> 1;
    findBroken(entries.slice(0, middle), convert, broken);
    findBroken(entries.slice(middle), convert, broken);
  }
}

// `convert` takes entries and gives as many results, in order. Gives the results as
// [entry, result] and the broken entries as a map to the reason. What is sound is
// converted together in the end, because entries can refer to each other.
export function convertSound(entries, convert) {
  const broken = new Map();
  const pair = (sound) => convert(sound).map((result, index) => [sound[index], result]);
  if (entries.length === 0) {
    return { results: [], broken };
  }
  try {
    return { results: pair(entries), broken };
  } catch {
    findBroken(entries, convert, broken);
    const sound = entries.filter((entry) => !broken.has(entry));
    return { results: sound.length > 0 ? pair(sound) : [], broken };
  }
}
