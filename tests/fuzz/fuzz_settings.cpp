// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "settings.h"

namespace {

// The parser is private, and the slot that calls it writes to the settings store. An explicit
// instantiation may refer to private members, so it is used to access the parser.
using Reader = void (settings::*)(const QByteArray &);
Reader reader();
template <Reader function> struct Reach
{
    friend Reader reader() { return function; }
};
template struct Reach<&settings::parseValues>;

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    settings file;
    (file.*reader())(fuzz::bytes(data, size));
    const QString path = file.pathToData();
    const bool usable = !path.isEmpty() && !path.startsWith(u'~');
    fuzz::check(file.namePath() == (usable ? path : QStringLiteral("!")), "folder or mark");
    fuzz::check(!path.contains(u'"') && !path.contains(u'\n'), "one quoted text of one line");
    return 0;
}
