#ifndef VANLAYOUT_BROWSER_H
#define VANLAYOUT_BROWSER_H

#include <QString>

/// Starts a browser with the file at \a path and does not wait for it. Returns whether one could be started.
///
/// The environment variable BROWSER names it: commands separated by colons, tried in turn. In a command, `%s` is
/// replaced by the address of the file; without it, the address is the last argument. No shell reads the commands.
/// Without the variable, the desktop's program for opening files is started.
bool openInBrowser(const QString &path);

#endif
