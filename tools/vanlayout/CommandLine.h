#ifndef VANLAYOUT_COMMANDLINE_H
#define VANLAYOUT_COMMANDLINE_H

/// Runs the command that the arguments name, and answers the exit status. A call that cannot be taken is one line on
/// standard error, with a suggestion where a word is nearly one that is known. \a isVerbose is set as `--verbose` asks,
/// before the command runs.
int runCommandLine(int argc, char **argv, bool &isVerbose);

#endif
