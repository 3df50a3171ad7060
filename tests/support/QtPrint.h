#pragma once
// Readable QStrings in test failures. Every test file that compares QStrings includes
// this, so that all of them print the same way.

#include <QString>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }
