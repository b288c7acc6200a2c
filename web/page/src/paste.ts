// Ranges as people paste them. The calculator reads the usual notations itself; what is done here is only
// what copying does to text (line ends, dashes, quotes) and the spellings that it does not know.

/** A pasted range as the calculator reads it. */
export function tidyRange(text: string): string {
  return tidied(text).replace(/^[\s,;]+|[\s,;]+$/g, "");
}

/**
 * What takes the place between two parts of a text: separators at its ends stay where they part it from
 * something.
 */
export function tidyPiece(before: string, pasted: string, after: string): string {
  let piece = tidied(pasted);
  if (/(^|[,;])\s*$/.test(before)) piece = piece.replace(/^[\s,;]+/, "");
  if (/^\s*($|[,;])/.test(after)) piece = piece.replace(/[\s,;]+$/, "");
  return piece;
}

function tidied(text: string): string {
  return (
    text
      .replace(/[\u00a0\u2000-\u200b\ufeff]/g, " ")
      .replace(/[\u2010-\u2015\u2212]/g, "-")
      .replace(/[\u201c\u201d\u2018\u2019"'`]/g, "")
      // Of a table: a hand, and its weight in the next column.
      .replace(/\t\s*(?=(\d*\.\d+|[01])\s*([\r\n\t|,;]|$))/g, ":")
      .replace(/[\r\n\t|]+/g, ",")
      .replace(/\s*=\s*(?=[\d.])/g, ":")
      .replace(/\s*([:@])\s*(?=[\d.])/g, "$1")
      .replace(/(\w)\s*-\s*(?=\w)/g, "$1-")
      .replace(/(\d)\s+%/g, "$1%")
      // AA(0.5) and AA(50%), where the number cannot be a hand.
      .replace(/([\w+*%])\s*\((\d*\.\d+|[01]|[\d.]+%)\)/g, "$1:$2")
      .replace(/[:@](\d*\.?\d+)%/g, "@$1")
      .replace(/(\d*\.?\d+)\(([^()]*)\)/g, (_, weight: string, hands: string) =>
        weigh(hands, weight),
      )
      .replace(/\s*([,;])[\s,;]*/g, "$1")
  );
}

/** 0.4(AsKs,QQ) is AsKs:0.4,QQ:0.4. */
function weigh(hands: string, weight: string): string {
  const pieces = hands.split(/[\s,;]+/).filter((piece) => piece !== "");
  return pieces.map((piece) => `${piece}:${weight}`).join(",");
}
