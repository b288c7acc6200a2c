// The few drawings on buttons, 20 units wide, in the colour of the text.

const PATHS = {
  undo: "M8 4 4 8l4 4M4 8h7.5a4.5 4.5 0 0 1 0 9H9",
  redo: "m12 4 4 4-4 4M16 8H8.5a4.5 4.5 0 0 0 0 9H11",
  link: "M8.5 11.5 11.5 8.5M9.5 6l1.6-1.6a3.2 3.2 0 0 1 4.5 4.5L14 10.5M10.5 14l-1.6 1.6a3.2 3.2 0 0 1-4.5-4.5L6 9.5",
  close: "m5.5 5.5 9 9M14.5 5.5l-9 9",
  plus: "M10 4.5v11M4.5 10h11",
  grid: "M4 4h12v12H4zM4 8h12M4 12h12M8 4v12M12 4v12",
  light:
    "M10 6.8a3.2 3.2 0 1 0 0 6.4 3.2 3.2 0 0 0 0-6.4M10 2.5v1.5M10 16v1.5M2.5 10H4M16 10h1.5M4.7 4.7l1 1M14.3 14.3l1 1M15.3 4.7l-1 1M5.7 14.3l-1 1",
  dark: "M15.5 11.7A6 6 0 1 1 8.3 4.5a4.8 4.8 0 0 0 7.2 7.2z",
  auto: "M10 4a6 6 0 1 0 0 12zM10 4a6 6 0 1 1 0 12",
} as const;

export type IconName = keyof typeof PATHS;

export function Icon({ name }: { name: IconName }) {
  return (
    <svg class="icon" viewBox="0 0 20 20" aria-hidden="true">
      <path d={PATHS[name]} />
    </svg>
  );
}
