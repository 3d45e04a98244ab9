// What the program knows of this folder: documents, formatted the fast way.
import "./hotPaths.js";

export { formatDocument } from "./document.js";
