// What a person likes, kept by the browser: dark or light, and the colours of the suits.

import { useLayoutEffect, useState } from "preact/hooks";

export const THEMES = ["auto", "light", "dark"] as const;
export type Theme = (typeof THEMES)[number];

export interface Settings {
  theme: Theme;
  fourColours: boolean;
}

const KEY = "pokermath.settings";
const USUAL: Settings = { theme: "auto", fourColours: true };

function load(): Settings {
  try {
    const kept: unknown = JSON.parse(localStorage.getItem(KEY) ?? "{}");
    const { theme, fourColours } = Object(kept) as Partial<Record<keyof Settings, unknown>>;
    return {
      theme: THEMES.find((one) => one === theme) ?? USUAL.theme,
      fourColours: typeof fourColours === "boolean" ? fourColours : USUAL.fourColours,
    };
  } catch {
    return USUAL; // storage is switched off, or something else wrote there
  }
}

export function useSettings(): [Settings, (settings: Settings) => void] {
  const [settings, setSettings] = useState(load);
  // Before anything is drawn: a dark page must not begin with a flash of light.
  useLayoutEffect(() => {
    document.documentElement.dataset["theme"] = settings.theme;
    document.documentElement.dataset["suits"] = settings.fourColours ? "four" : "two";
    try {
      localStorage.setItem(KEY, JSON.stringify(settings));
    } catch {
      // Without storage the choice holds as long as the page is open.
    }
  }, [settings]);
  return [settings, setSettings];
}
