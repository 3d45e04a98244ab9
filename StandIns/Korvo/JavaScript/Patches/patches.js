import "./cites.js";
import "./comparing.js";
import "./numbers.js";
import "./recalled.js";
import "./rules.js";
import "./texts.js";
import "./words.js";
