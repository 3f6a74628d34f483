#pragma once
#include <QString>
#include <QStringList>
#include <vector>

namespace vesko {

/// A component that is part of this build, with its licence notice in full.
struct Acknowledgement {
    QString name;
    QStringList paragraphs;
    bool operator==(const Acknowledgement&) const = default;
};

/// Reads a notice: the first line is the component's name, the rest paragraphs with blank lines between them.
/// A paragraph's line breaks are those of a page of fixed width and go.
Acknowledgement acknowledgementFromText(const QString& text);

/// Those of this build, in the order in which they are shown.
std::vector<Acknowledgement> acknowledgements();

} // namespace vesko
