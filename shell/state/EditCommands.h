#pragma once
// The clipboard commands of the menus: on the control that has the focus, text only.

#include <QString>

class QWidget;

namespace vardelin {

class ChildWindow;

// The text field that has the focus in a window: a line edit (also that of a combo box or a picker) or a rich
// text box; nullptr where another kind of control has it.
QWidget *activeTextField(const ChildWindow &window);

// SelText of such a field: line ends CR LF in a rich text box, pictures left out. No field: empty, no effect.
QString selText(const QWidget *field);
void setSelText(QWidget *field,
                const QString &text); // in place of the selection, or at the caret; can be undone

// Copy without a selection empties the clipboard. Paste without text on the clipboard removes the selection.
void copySelection(const QWidget *field);
void cutSelection(QWidget *field);
void pasteText(QWidget *field);
void deleteSelection(QWidget *field);

// Ctrl+C, Ctrl+X and Ctrl+A in the fields of a window go to its menus' commands. Everything else a field does
// by itself: Del with its one character, Ctrl+V with pictures, undo and redo. Call when the fields are made.
void giveClipboardKeysToMenu(QWidget *window);

} // namespace vardelin
