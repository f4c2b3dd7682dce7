// The files that go with an installed program: its manual pages and what shells complete.
#ifndef VNCORE_TOOLS_DOCUMENTS_H
#define VNCORE_TOOLS_DOCUMENTS_H

#include <CLI/CLI.hpp>

namespace vn::tool {

// Adds the hidden option --documents FOLDER to a program whose other options are all there. It writes
// the tree that is installed as share/: man/man1, bash-completion, zsh and fish.
void AddDocumentsOption(CLI::App& app, const std::string& version);

}  // namespace vn::tool

#endif
