#pragma once

#include <QStringList>

class QMenu;

namespace tarn::host {

// Returns the labels, each with a mnemonic that no other of them has as far as there are letters:
// its own one, else the first letter of one of its words, else any letter or digit. A shortcut
// after a tab is not part of a label.
QStringList WithMnemonics(QStringList labels);

// Gives the entries of a menu mnemonics each time it is shown, after everything that has been
// connected to this signal before has changed the entries.
void KeepMnemonics(QMenu& menu);

}  // namespace tarn::host
