import js from "@eslint/js";
import globals from "globals";

const rules = {
  ...js.configs.recommended.rules,
  "no-unused-vars": "error",
  "no-var": "error",
  "prefer-const": "error",
  eqeqeq: ["error", "always", { null: "ignore" }],
};

export default [
  { files: ["web/**/*.js"], rules, languageOptions: { globals: globals.browser } },
  { files: ["tests/page/*.js"], rules, languageOptions: { globals: { ...globals.node, ...globals.browser } } },
];
