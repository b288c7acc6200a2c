import globals from "globals";
import hooks from "eslint-plugin-react-hooks";
import tseslint from "typescript-eslint";

export default tseslint.config(
  { ignores: ["**/dist/", "node_modules/"] },
  ...tseslint.configs.strict,
  { files: ["page/**"], plugins: { "react-hooks": hooks }, rules: hooks.configs.recommended.rules },
  { languageOptions: { globals: { ...globals.browser, ...globals.node } } },
);
