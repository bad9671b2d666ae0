#ifndef LAYOUT_READ_CSPRODATABASEGUARD_P_H
#define LAYOUT_READ_CSPRODATABASEGUARD_P_H

struct sqlite3;

namespace vanlayout
{

/// Restrictions on a CSPro data file, which may be untrusted, while its dictionary is searched.
namespace csprodatabase
{

/// Name of the table with the dictionary.
constexpr char table[] = "meta";
/// Max size of a dictionary in bytes.
constexpr int maxDictionarySize = 256 << 20;
/// Max steps of SQLite's virtual machine in one statement. The search for the row takes about ten.
constexpr int maxSteps = 10'000'000;

/// After this call the connection only reads columns of the table `meta`, in statements of at most `maxSteps`. SQLite
/// refuses to prepare anything else: other tables, views, triggers, functions, recursion, pragmas, attached databases,
/// writing. No extension can be loaded, and no text or BLOB is longer than `maxDictionarySize`.
void restrict(sqlite3 *connection);

} // namespace csprodatabase

} // namespace vanlayout

#endif
