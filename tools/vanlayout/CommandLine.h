#ifndef VANLAYOUT_COMMANDLINE_H
#define VANLAYOUT_COMMANDLINE_H

/// Runs the command named by the arguments, and returns the exit status. An invalid call gives one line on standard
/// error, with a suggestion for a word that is similar to a known one. \a isVerbose is set from `--verbose` before the
/// command runs.
int runCommandLine(int argc, char **argv, bool &isVerbose);

#endif
