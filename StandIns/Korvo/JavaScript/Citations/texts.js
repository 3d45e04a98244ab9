// The texts of a document's groups, each different text once: a long document has many times as
// many groups.
export class GroupTexts {
  #places = new Map();
  #groups;

  constructor(groupCount) {
    this.#groups = new Array(groupCount);
  }

  set(group, text) {
    let place = this.#places.get(text);
    if (place === undefined) {
      place = this.#places.size;
      this.#places.set(text, place);
    }
    this.#groups[group] = place;
  }

  // The texts, and for each group which of them is its. A group that was given none shows nothing.
  answer() {
    for (let group = 0; group < this.#groups.length; group += 1) {
      if (this.#groups[group] === undefined) {
        this.set(group, "");
      }
    }
    return { texts: [...this.#places.keys()], groups: this.#groups };
  }
}
