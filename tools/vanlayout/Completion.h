#ifndef VANLAYOUT_COMPLETION_H
#define VANLAYOUT_COMPLETION_H

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The shells whose completion is known: bash, fish and zsh.
std::vector<std::string> shellsWithCompletion();

/// The script that completes commands, options and their values in a shell of that list. It is made from the commands
/// and options of \a app, so that it has all of them.
std::string completionScript(const CLI::App &app, const std::string &shell);

/// The values that an option takes, where they are a list; none where it takes any.
std::vector<std::string> choicesOf(const CLI::Option &option);

/// The names of an option as they are typed: "-o", "--output".
std::vector<std::string> spellingsOf(const CLI::Option &option);

/// The names of the commands, in their order.
std::vector<std::string> commandsOf(const CLI::App &app);

#endif
