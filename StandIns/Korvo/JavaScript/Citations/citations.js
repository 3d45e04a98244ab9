// What the program knows of this folder: documents, formatted the fast way.
import "../Patches/patches.js";

export { formatDocument, rehearseDocument } from "./document.js";
