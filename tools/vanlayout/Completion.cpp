#include "Completion.h"

#include <algorithm>

using std::string;
using Words = std::vector<string>;

namespace
{

string joined(const Words &words, const string &separator = " ")
{
    string text;
    for (const string &word : words)
        text += (text.empty() ? string() : separator) + word;
    return text;
}

string replaced(string text, const string &found, const string &replacement)
{
    for (size_t place = text.find(found); place != string::npos; place = text.find(found, place + replacement.size()))
        text.replace(place, found.size(), replacement);
    return text;
}

// A text in single quotes for bash and zsh.
string shellQuoted(const string &text)
{
    return '\'' + replaced(text, "'", "'\\''") + '\'';
}

bool takesValue(const CLI::Option &option)
{
    return option.get_items_expected_max() > 0;
}

// The spellings of options; positional arguments are completed as files.
std::vector<const CLI::Option *> optionsOf(const CLI::App &app)
{
    return app.get_options([](const CLI::Option *option) { return !option->get_positional(); });
}

std::vector<const CLI::App *> subcommandsOf(const CLI::App &app)
{
    return app.get_subcommands([](const CLI::App *) { return true; });
}

// The options accepted after a command: its own, and those of the tool that it does not have itself.
std::vector<const CLI::Option *> optionsAfter(const CLI::App &command, const CLI::App &app)
{
    std::vector<const CLI::Option *> options = optionsOf(command);
    for (const CLI::Option *option : optionsOf(app)) {
        if (!command.get_option_no_throw(spellingsOf(*option).back()))
            options.push_back(option);
    }
    return options;
}

bool takesList(const CLI::Option &option)
{
    return option.get_delimiter() != '\0';
}

Words wordsOf(const std::vector<const CLI::Option *> &options)
{
    Words words;
    for (const CLI::Option *option : options) {
        for (const string &spelling : spellingsOf(*option))
            words.push_back(spelling);
    }
    return words;
}

// The words that a command accepts as positional arguments: commands for `help`, shells for `completion`.
Words positionalChoices(const CLI::App &command)
{
    for (const CLI::Option *option : command.get_options()) {
        if (option->get_positional() && !choicesOf(*option).empty())
            return choicesOf(*option);
    }
    return {};
}

string bashCommand(const CLI::App &command, const CLI::App &app)
{
    string script = "        " + command.get_name() + ")\n            case $previous in\n";
    for (const CLI::Option *option : optionsOf(command)) {
        if (!takesValue(*option))
            continue;
        script += "                " + joined(spellingsOf(*option), "|") + ")";
        const Words choices = choicesOf(*option);
        const string words = takesList(*option) ? " _vanlayout_list '" : " _vanlayout_words '";
        script += choices.empty() ? " return ;;\n" : words + joined(choices) + "'; return ;;\n";
    }
    script += "            esac\n            options='" + joined(wordsOf(optionsAfter(command, app))) + "'\n";
    const Words choices = positionalChoices(command);
    if (!choices.empty())
        script += "            words='" + joined(choices) + "'\n";
    return script + "            ;;\n";
}

// Arguments without a list are completed as files, by `-o default`.
string bashScript(const CLI::App &app)
{
    string script = R"(# Completion of vanlayout for bash.
_vanlayout_words()
{
    COMPREPLY=($(compgen -W "$1" -- "$current"))
}
_vanlayout_list()
{
    local last=${current##*,}
    COMPREPLY=($(compgen -P "${current%"$last"}" -W "$1" -- "$last"))
}
_vanlayout()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= options= words= i
    COMPREPLY=()
    if [[ $current == '=' ]]; then
        current=
    elif [[ $previous == '=' ]] && ((COMP_CWORD > 1)); then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done
    case $command in
)";
    for (const CLI::App *command : subcommandsOf(app))
        script += bashCommand(*command, app);
    script += "        '')\n            options='" + joined(wordsOf(optionsOf(app))) + "'\n            words='"
        + joined(commandsOf(app)) + "'\n            ;;\n    esac\n";
    return script + R"(    if [[ $current == -* ]]; then
        _vanlayout_words "$options"
    elif [[ -n $words ]]; then
        _vanlayout_words "$words"
    fi
}
complete -o bashdefault -o default -F _vanlayout vanlayout
)";
}

// The values of an option or argument in zsh's syntax.
enum class Values { one, list };

string zshValues(const Words &choices, Values values)
{
    if (choices.empty())
        return ":file:_files";
    return values == Values::list ? ":value:_values -s , value " + joined(choices) : ":value:(" + joined(choices) + ")";
}

// One argument of zsh's `_arguments`: only one of several spellings is accepted, once; a list can be repeated. The
// value of a long option can follow `=`.
string zshOption(const CLI::Option &option)
{
    const Words spellings = spellingsOf(option);
    const string help = replaced(replaced(option.get_description(), "[", "("), "]", ")");
    const string value
        = takesValue(option) ? zshValues(choicesOf(option), takesList(option) ? Values::list : Values::one) : string();
    string others = spellings.size() > 1 ? "(" + joined(spellings) + ")" : string();
    if (takesList(option))
        others = "*";
    string script;
    for (const string &spelling : spellings) {
        const bool hasSign = takesValue(option) && spelling.compare(0, 2, "--") == 0;
        const string name = hasSign ? spelling + "=" : spelling;
        script += " \\\n                ";
        script += shellQuoted(string(others).append(name).append("[").append(help).append("]").append(value));
    }
    return script;
}

string zshScript(const CLI::App &app)
{
    string script = "#compdef vanlayout\n# Completion of vanlayout for zsh.\n_vanlayout()\n{\n    local -a commands\n"
                    "    commands=(\n";
    for (const CLI::App *command : subcommandsOf(app))
        script += "        " + shellQuoted(command->get_name() + ":" + replaced(command->get_description(), ":", "\\:"))
            + "\n";
    script += "    )\n    local -i place=2\n    while ((place < CURRENT)) && [[ $words[place] == -* ]]; do\n"
              "        ((++place))\n    done\n"
              "    if ((CURRENT == place)); then\n        _describe command commands\n        _arguments";
    for (const CLI::Option *option : optionsOf(app))
        script += zshOption(*option);
    script += "\n        return\n    fi\n    local command=$words[place]\n    words=(\"${(@)words[place,-1]}\")\n"
              "    ((CURRENT -= place - 1))\n"
              "    case $command in\n";
    for (const CLI::App *command : subcommandsOf(app)) {
        script += "        " + command->get_name() + ")\n            _arguments";
        for (const CLI::Option *option : optionsAfter(*command, app))
            script += zshOption(*option);
        script += " \\\n                " + shellQuoted("*" + zshValues(positionalChoices(*command), Values::one))
            + "\n            ;;\n";
    }
    return script + "    esac\n}\n_vanlayout \"$@\"\n";
}

// A text in single quotes for fish.
string fishQuoted(const string &text)
{
    return '\'' + replaced(replaced(text, "\\", "\\\\"), "'", "\\'") + '\'';
}

string fishOption(const CLI::Option &option, const string &condition)
{
    string line = "complete -c vanlayout -n " + fishQuoted(condition);
    for (const string &name : option.get_snames())
        line += " -s " + name;
    for (const string &name : option.get_lnames())
        line += " -l " + name;
    if (takesValue(option)) {
        const Words choices = choicesOf(option);
        const string values = takesList(option) ? "(__fish_append , " + joined(choices) + ")" : joined(choices);
        line += choices.empty() ? string(" -r") : " -x -a " + fishQuoted(values);
    }
    return line + " -d " + fishQuoted(option.get_description()) + "\n";
}

string fishScript(const CLI::App &app)
{
    string script = "# Completion of vanlayout for fish.\n";
    for (const CLI::App *command : subcommandsOf(app))
        script += "complete -c vanlayout -f -n __fish_use_subcommand -a " + command->get_name() + " -d "
            + fishQuoted(command->get_description()) + "\n";
    for (const CLI::Option *option : optionsOf(app))
        script += fishOption(*option, "__fish_use_subcommand");
    for (const CLI::App *command : subcommandsOf(app)) {
        const string condition = "__fish_seen_subcommand_from " + command->get_name();
        for (const CLI::Option *option : optionsAfter(*command, app))
            script += fishOption(*option, condition);
        const Words choices = positionalChoices(*command);
        if (!choices.empty())
            script
                += "complete -c vanlayout -f -n " + fishQuoted(condition) + " -a " + fishQuoted(joined(choices)) + "\n";
    }
    return script;
}

struct Shell {
    const char *name;
    string (*script)(const CLI::App &app);
};
constexpr Shell shells[] = { { "bash", bashScript }, { "fish", fishScript }, { "zsh", zshScript } };

} // namespace

Words shellsWithCompletion()
{
    Words names;
    for (const Shell &shell : shells)
        names.emplace_back(shell.name);
    return names;
}

string completionScript(const CLI::App &app, const string &shell)
{
    const auto *known = std::find_if(std::begin(shells), std::end(shells),
                                     [&](const Shell &candidate) { return shell == candidate.name; });
    return known == std::end(shells) ? string() : known->script(app);
}

// The parser describes the check of an option as its type: TEXT:{table,json}.
Words choicesOf(const CLI::Option &option)
{
    const string type = option.get_type_name();
    const size_t open = type.find('{');
    const size_t close = type.find('}');
    if (open == string::npos || close == string::npos)
        return {};
    return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

Words spellingsOf(const CLI::Option &option)
{
    Words spellings;
    for (const string &name : option.get_snames())
        spellings.push_back('-' + name);
    for (const string &name : option.get_lnames())
        spellings.push_back("--" + name);
    return spellings;
}

Words commandsOf(const CLI::App &app)
{
    Words names;
    for (const CLI::App *command : subcommandsOf(app))
        names.push_back(command->get_name());
    return names;
}
