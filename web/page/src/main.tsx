// Puts the page together.

import { render } from "preact";
import { Calculator } from "pokermath";
import { App } from "./app.js";
import { CalculatorContext } from "./calculator.js";
import "./style.css";

const calculators = { answers: new Calculator(), ranges: new Calculator({ threads: 1 }) };
const place = document.getElementById("page");
if (place !== null) {
  render(
    <CalculatorContext.Provider value={calculators}>
      <App />
    </CalculatorContext.Provider>,
    place,
  );
}
