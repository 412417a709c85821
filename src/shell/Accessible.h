#pragma once
// Accessible names from visible labels: every field that a label names (a form
// row's label, a label with a buddy) gets the label's text, without the access
// key's "&", as its accessible name, so that screen readers and UI automation find
// it by what the user sees. Buttons and check boxes are named by their own text.

class QWidget;
class QString;

namespace rqshell {

// Names the fields below `root` by their labels; fields named already keep theirs.
void nameFieldsByLabels(QWidget* root);
// A label's text as an accessible name ("&Name:" gives "Name:").
QString accessibleText(const QString& label);

} // namespace rqshell
