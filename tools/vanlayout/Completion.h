#ifndef VANLAYOUT_COMPLETION_H
#define VANLAYOUT_COMPLETION_H

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The supported shells: bash, fish and zsh.
std::vector<std::string> shellsWithCompletion();

/// The completion script of one of these shells for commands, options and their values. It is generated from the
/// commands and options of \a app, so that it has all of them.
std::string completionScript(const CLI::App &app, const std::string &shell);

/// The values that an option accepts; empty if it accepts any.
std::vector<std::string> choicesOf(const CLI::Option &option);

/// The spellings of an option: "-o", "--output".
std::vector<std::string> spellingsOf(const CLI::Option &option);

/// The names of the commands, in their order.
std::vector<std::string> commandsOf(const CLI::App &app);

#endif
