// Puts the page together.

import { render } from "preact";
import { Calculator } from "pokermath";
import { App } from "./app.js";
import { CalculatorContext } from "./calculator.js";
import "./style.css";

const calculator = new Calculator();
void calculator.version(); // its module gets ready while the page is drawn
const place = document.getElementById("page");
if (place !== null) {
  render(
    <CalculatorContext.Provider value={calculator}>
      <App />
    </CalculatorContext.Provider>,
    place,
  );
}
