#pragma once

// The translations of the front end's programs that have Qt. (`veldacc` itself has not, see messages.h.)

#include <array>
#include <string>

#include <QString>
#include <QTranslator>

namespace veldacc {

// Holds the translations while it lives. Needs the application object. They are looked for below NORVIKDIR as with the
// report generator, and without it where the installation puts them: `libraryDirectory` is that of this program's
// files, lib/veldacc.
class Translations {
public:
    explicit Translations(const QString& libraryDirectory);

private:
    std::array<QTranslator, 3> translators_;
};

} // namespace veldacc
