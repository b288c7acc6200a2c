// Puts the page together.

import { render } from "preact";
import { Calculator } from "pokermath";
import { App } from "./app.js";
import { CalculatorContext } from "./calculator.js";
import "./style.css";

const place = document.getElementById("page");
if (place !== null) {
  render(
    <CalculatorContext.Provider value={new Calculator()}>
      <App />
    </CalculatorContext.Provider>,
    place,
  );
}
