// Formatted text: the inline codes of table cell text, and the plain text a reader sees.
//
//   char16_t* plain = pwdbStripMTextFormatting(u"{\\fserif;Rev\\PA}", style, 0);
//   // plain is u"Rev\nA"
//   pwutDelBuffer(plain);
//
// The language (docs/formatted-text.md): a backslash starts a code. `\P` breaks the paragraph;
// `\fNAME;` switches the font and `\HVALUE;` the height (the parameter ends at the first `;`);
// `\L` and `\l` turn underlining on and off; `\~` is a space that doesn't break. `{` and `}`
// group: what a group switches ends with it. `\\`, `\{` and `\}` stand for the characters
// themselves. A backslash before any other character, or at the very end, is plain text.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

/// The plain text of formatted `text`, in a new buffer that the caller frees with
/// pwutDelBuffer: codes and braces removed, escapes undone, paragraph breaks as line breaks
/// ('\n'). Null for null text, and when the buffer can't be had. `style` (the text's style)
/// and `flags` (0) don't change the plain text; they are there for the callers that pass
/// them. Reads `text` up to its terminating zero and never beyond, whatever the codes.
char16_t* pwdbStripMTextFormatting(const char16_t* text, PwDbObjectId style, int flags);

/// The same into a wide string; the empty string for null.
wstring pwdbPlainText(const char16_t* text);

/// `text` made safe to store as formatted text that reads back as itself: every `\`, `{` and
/// `}` escaped.
wstring pwdbEscapeFormattedText(const wstring& text);
