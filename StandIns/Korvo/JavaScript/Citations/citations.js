// What the program knows of this folder: documents, formatted the fast way.
import "../Patches/patches.js";

export { formatDocument } from "./document.js";
export { rehearseDocument } from "./rehearsing.js";
