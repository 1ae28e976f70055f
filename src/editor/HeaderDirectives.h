#pragma once
// Script statements a program carries in its opening comments, such as
// (## ZMTSetConfig "Lathe"), which configure the program as it is loaded.
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

// The statements of the program's header, in order. The header runs from the first line to the
// first line that is neither blank, nor begins with "%", ":", "&" or "O" (any case), nor is a
// comment in "(...)" or "[...]" (the closing character is optional). A comment whose text
// begins with "##" holds a statement: the text behind "##", trimmed. Lines end with CR LF, LF
// or CR.
std::vector<std::string> ScanHeaderDirectives(std::string_view text);

}  // namespace zemtra
