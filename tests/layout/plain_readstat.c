/* Prints the layout of a statistical file in its JSON form, read with plain ReadStat and nothing of this project.
 *
 *     cc -std=gnu11 -o plain_readstat plain_readstat.c -lreadstat -lm
 *     plain_readstat FILE
 *
 * Extras and problems are left out. The status is 2 where the file gives no layout. */

#define _GNU_SOURCE /* memmem */

#include <ctype.h>
#include <float.h>
#include <math.h>
#include <readstat.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

enum Form { UNKNOWN, SPSS, PORTABLE, STATA, SAS, XPORT };

static const char *const formNames[] = { "", "spss", "spss-portable", "stata", "sas", "sas-xport" };

struct Label {
    char *set;
    char *value;
    char *text;
};

struct Item {
    char *head; /* the members before the value sets */
    char *set;
};

struct Layout {
    enum Form form;
    char *version;
    char *encoding;
    char *name;
    char *fileLabel;
    char *note;
    size_t noteLines;
    char *weight;
    long rows;
    time_t created;
    time_t modified;
    struct Item *items;
    size_t itemCount;
    struct Label *labels;
    size_t labelCount;
};

/* --- Texts ---------------------------------------------------------------------------------------------------------
 */

static char *copyOf(const char *text)
{
    return strdup(text ? text : "");
}

static void printString(FILE *out, const char *text)
{
    fputc('"', out);
    for (; *text; ++text) {
        const unsigned char c = (unsigned char)*text;
        if (c == '"' || c == '\\')
            fprintf(out, "\\%c", c);
        else if (c < 0x20)
            fprintf(out, "\\u%04x", c);
        else
            fputc(c, out);
    }
    fputc('"', out);
}

/* Writes ,"key":"text" if the text is not empty. */
static void printText(FILE *out, const char *key, const char *text)
{
    if (!text || !*text)
        return;
    fprintf(out, ",\"%s\":", key);
    printString(out, text);
}

static void printLabels(FILE *out, const char *text)
{
    if (!text || !*text)
        return;
    fputs(",\"labels\":[{\"text\":", out);
    printString(out, text);
    fputs("}]", out);
}

/* Digits and exponent of the shortest spelling that reads back to the same number. */
static void shortest(double number, char *digits, int *exponent)
{
    char text[40];
    for (int precision = 0; precision <= 16; ++precision) {
        snprintf(text, sizeof text, "%.*e", precision, number);
        if (strtod(text, NULL) == number)
            break;
    }
    char *mark = strchr(text, 'e');
    *exponent = atoi(mark + 1);
    size_t length = 0;
    for (const char *c = text; c < mark; ++c) {
        if (isdigit((unsigned char)*c))
            digits[length++] = *c;
    }
    while (length > 1 && digits[length - 1] == '0')
        --length;
    digits[length] = '\0';
}

static void printPlain(FILE *out, const char *digits, int exponent)
{
    const int count = (int)strlen(digits);
    if (exponent < 0) {
        fprintf(out, "0.%.*s%s", -exponent - 1, "0000", digits);
        return;
    }
    for (int i = 0; i < count || i <= exponent; ++i) {
        if (i == exponent + 1)
            fputc('.', out);
        fputc(i < count ? digits[i] : '0', out);
    }
}

static void printNumber(FILE *out, double number)
{
    char digits[40];
    int exponent;
    if (number < 0)
        fputc('-', out);
    number = fabs(number);
    if (isinf(number)) {
        fputs("inf", out);
        return;
    }
    shortest(number, digits, &exponent);
    if (exponent >= -4 && exponent <= 15)
        printPlain(out, digits, exponent);
    else
        fprintf(out, "%c%s%se%c%02d", digits[0], digits[1] ? "." : "", digits + 1, exponent < 0 ? '-' : '+',
                abs(exponent));
}

/* --- Values --------------------------------------------------------------------------------------------------------
 */

/* SPSS marks an open end of a range by the numbers with the largest magnitude of a double. */
static double openEnd(double number)
{
    if (number >= DBL_MAX)
        return INFINITY;
    if (number <= nextafter(-DBL_MAX, 0))
        return -INFINITY;
    return number;
}

static char *spelledText(readstat_value_t value, bool isCut)
{
    char *text = copyOf(readstat_string_value(value));
    size_t length = strlen(text);
    while (isCut && length > 0 && text[length - 1] == ' ')
        text[--length] = '\0';
    return text;
}

static char *spelledNumber(readstat_value_t value, bool isEnd)
{
    char *text;
    size_t size;
    FILE *out = open_memstream(&text, &size);
    const double number = readstat_double_value(value);
    if (readstat_value_is_tagged_missing(value))
        fprintf(out, ".%c", tolower((unsigned char)readstat_value_tag(value)));
    else if (readstat_value_is_system_missing(value) || isnan(number))
        fputc('.', out);
    else
        printNumber(out, isEnd ? openEnd(number) : number);
    fclose(out);
    return text;
}

static char *spelled(readstat_value_t value, bool isMissing)
{
    if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING)
        return spelledText(value, isMissing);
    return spelledNumber(value, isMissing);
}

/* --- Variables -----------------------------------------------------------------------------------------------------
 */

static const char *storageOf(readstat_type_t type)
{
    switch (type) {
    case READSTAT_TYPE_INT8:
        return "int8";
    case READSTAT_TYPE_INT16:
        return "int16";
    case READSTAT_TYPE_INT32:
        return "int32";
    case READSTAT_TYPE_FLOAT:
        return "float";
    case READSTAT_TYPE_DOUBLE:
        return "double";
    default:
        return "string";
    }
}

/* The first run of digits in a format; -1 if there is none. */
static long widthIn(const char *format)
{
    const char *digits = format + strcspn(format, "0123456789");
    return *digits ? strtol(digits, NULL, 10) : -1;
}

/* The digits after the last mark of a format if only letters follow. */
static long decimalsIn(const char *format)
{
    const char *mark = NULL;
    for (const char *c = format; *c; ++c) {
        if (*c == '.' || *c == ',')
            mark = c;
    }
    if (!mark || !isdigit((unsigned char)mark[1]))
        return 0;
    char *end;
    const long decimals = strtol(mark + 1, &end, 10);
    while (isalpha((unsigned char)*end))
        ++end;
    return *end ? 0 : decimals;
}

static long lengthOfText(enum Form form, readstat_variable_t *variable)
{
    long width = (long)readstat_variable_get_storage_width(variable);
    if (form == STATA)
        return width > 0 ? width - 1 : 0; /* a strL has no width */
    if (form == SPSS || form == PORTABLE) {
        const char *format = readstat_variable_get_format(variable);
        const long declared = widthIn(format ? format : "");
        width = form == PORTABLE ? width / 8 : width;
        return declared >= 0 && declared < width ? declared : width;
    }
    return width;
}

static void printMissing(FILE *out, readstat_variable_t *variable)
{
    const int count = readstat_variable_get_missing_ranges_count(variable);
    for (int i = 0; i < count; ++i) {
        char *low = spelled(readstat_variable_get_missing_range_lo(variable, i), true);
        char *high = spelled(readstat_variable_get_missing_range_hi(variable, i), true);
        fputs(i == 0 ? ",\"missing\":[{\"from\":" : ",{\"from\":", out);
        printString(out, low);
        if (strcmp(low, high) != 0)
            printText(out, "to", high);
        fputs(i == count - 1 ? "}]" : "}", out);
        free(low);
        free(high);
    }
}

static void printItem(FILE *out, enum Form form, readstat_variable_t *variable)
{
    static const char *const measures[] = { "", "nominal", "ordinal", "scale" };
    static const char *const alignments[] = { "", "left", "center", "right" };
    const bool isText = readstat_variable_get_type_class(variable) == READSTAT_TYPE_CLASS_STRING;
    const char *format = readstat_variable_get_format(variable);
    format = format ? format : "";
    const long width = widthIn(format);
    const long decimals = isText ? 0 : decimalsIn(format);
    const int display = abs(readstat_variable_get_display_width(variable));
    fputs("{\"name\":", out);
    printString(out, readstat_variable_get_name(variable));
    printLabels(out, readstat_variable_get_label(variable));
    fprintf(out, ",\"type\":\"%s\",\"length\":%ld", isText ? "alpha" : "numeric",
            isText          ? lengthOfText(form, variable)
                : width < 0 ? 0
                            : width);
    if (decimals)
        fprintf(out, ",\"decimals\":%ld", decimals);
    printText(out, "storage", storageOf(readstat_variable_get_type(variable)));
    printText(out, "format", format);
    printText(out, "measure", measures[readstat_variable_get_measure(variable)]);
    printText(out, "alignment", alignments[readstat_variable_get_alignment(variable)]);
    if (display)
        fprintf(out, ",\"displayWidth\":%d", display);
    printMissing(out, variable);
}

/* --- Handlers of ReadStat ------------------------------------------------------------------------------------------
 */

static int onMetadata(readstat_metadata_t *metadata, void *context)
{
    struct Layout *layout = context;
    const int version = readstat_get_file_format_version(metadata);
    const bool statesEncoding = layout->form == SPSS || layout->form == SAS;
    char text[20];
    snprintf(text, sizeof text, "%d", version);
    layout->version = copyOf(version ? text : "");
    layout->encoding = copyOf(statesEncoding                                ? readstat_get_file_encoding(metadata)
                                  : layout->form == STATA && version >= 118 ? "utf-8"
                                                                            : "");
    for (char *c = layout->encoding; *c; ++c)
        *c = (char)tolower((unsigned char)*c);
    layout->name = copyOf(layout->form == SAS || layout->form == XPORT ? readstat_get_table_name(metadata) : "");
    layout->fileLabel = copyOf(readstat_get_file_label(metadata));
    layout->rows = readstat_get_row_count(metadata);
    layout->created = readstat_get_creation_time(metadata);
    layout->modified = readstat_get_modified_time(metadata);
    return READSTAT_HANDLER_OK;
}

static int onNote(int index, const char *note, void *context)
{
    struct Layout *layout = context;
    if (layout->form == STATA && index == 0)
        return READSTAT_HANDLER_OK; /* the number of notes */
    const size_t before = layout->note ? strlen(layout->note) : 0;
    layout->note = realloc(layout->note, before + strlen(note) + 2);
    sprintf(layout->note + before, "%s%s", layout->noteLines++ ? "\n" : "", note);
    return READSTAT_HANDLER_OK;
}

static int onVariable(int index, readstat_variable_t *variable, const char *labels, void *context)
{
    (void)index;
    struct Layout *layout = context;
    layout->items = realloc(layout->items, (layout->itemCount + 1) * sizeof *layout->items);
    struct Item *item = &layout->items[layout->itemCount++];
    size_t size;
    FILE *out = open_memstream(&item->head, &size);
    printItem(out, layout->form, variable);
    fclose(out);
    item->set = copyOf(labels);
    return READSTAT_HANDLER_OK;
}

static int onWeight(readstat_variable_t *variable, void *context)
{
    struct Layout *layout = context;
    free(layout->weight);
    layout->weight = copyOf(readstat_variable_get_name(variable));
    return READSTAT_HANDLER_OK;
}

static int onValueLabel(const char *set, readstat_value_t value, const char *text, void *context)
{
    struct Layout *layout = context;
    layout->labels = realloc(layout->labels, (layout->labelCount + 1) * sizeof *layout->labels);
    layout->labels[layout->labelCount++] = (struct Label){ copyOf(set), spelled(value, false), copyOf(text) };
    return READSTAT_HANDLER_OK;
}

/* --- The whole -----------------------------------------------------------------------------------------------------
 */

static void printTime(const char *key, const struct Layout *layout, time_t moment)
{
    char text[40];
    strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", layout->form == SAS ? gmtime(&moment) : localtime(&moment));
    printText(stdout, key, text);
}

static void printValueSet(const struct Layout *layout, const char *set)
{
    bool isFirst = true;
    for (size_t i = 0; i < layout->labelCount && *set; ++i) {
        const struct Label *label = &layout->labels[i];
        if (strcmp(label->set, set) != 0)
            continue;
        if (isFirst) {
            fputs(",\"valueSets\":[{\"name\":", stdout);
            printString(stdout, set);
        }
        fputs(isFirst ? ",\"values\":[{" : ",{", stdout);
        if (*label->text) {
            fputs("\"labels\":[{\"text\":", stdout);
            printString(stdout, label->text);
            fputs("}],", stdout);
        }
        fputs("\"ranges\":[{\"from\":", stdout);
        printString(stdout, label->value);
        fputs("}]}", stdout);
        isFirst = false;
    }
    if (!isFirst)
        fputs("]}]", stdout);
}

static void cutEmptyLines(char *text)
{
    size_t length = text ? strlen(text) : 0;
    while (length > 0 && text[length - 1] == '\n')
        text[--length] = '\0';
}

static void printLayout(const struct Layout *layout, const char *file)
{
    fputs("{\"layoutVersion\":1,\"file\":", stdout);
    printString(stdout, file);
    printText(stdout, "format", formNames[layout->form]);
    printText(stdout, "formatVersion", layout->version);
    printText(stdout, "encoding", layout->encoding);
    printText(stdout, "name", layout->name);
    printLabels(stdout, layout->fileLabel);
    cutEmptyLines(layout->note);
    printText(stdout, "note", layout->note);
    if (layout->rows >= 0)
        printf(",\"rows\":%ld", layout->rows);
    if (layout->created)
        printTime("created", layout, layout->created);
    if (layout->modified && layout->modified != layout->created)
        printTime("modified", layout, layout->modified);
    printText(stdout, "weight", layout->weight);
    fputs(",\"levels\":[{\"name\":\"\",\"ids\":[],\"records\":[{\"name\":\"\",\"items\":[", stdout);
    for (size_t i = 0; i < layout->itemCount; ++i) {
        fputs(i ? "," : "", stdout);
        fputs(layout->items[i].head, stdout);
        printValueSet(layout, layout->items[i].set);
        fputc('}', stdout);
    }
    puts("]}]}]}");
}

static bool contains(const char *bytes, size_t count, const char *word)
{
    return memmem(bytes, count, word, strlen(word)) != NULL;
}

static enum Form formOf(const char *bytes, size_t count)
{
    static const char sas[32]
        = "\0\0\0\0\0\0\0\0\0\0\0\0\xc2\xea\x81\x60\xb3\x14\x11\xcf\xbd\x92\x08\x00\x09\xc7\x31\x8c\x18\x1f\x10\x11";
    if (count >= 4 && (memcmp(bytes, "$FL2", 4) == 0 || memcmp(bytes, "$FL3", 4) == 0))
        return SPSS;
    if (contains(bytes, count < 11 ? count : 11, "<stata_dta>"))
        return STATA;
    if (count >= 32 && memcmp(bytes, sas, 32) == 0)
        return SAS;
    if (contains(bytes, count < 26 ? count : 26, "HEADER RECORD*******LIB"))
        return XPORT;
    if (contains(bytes, count, "SPSS PORT FILE") || contains(bytes, count, "SPSSPORT"))
        return PORTABLE;
    if (count >= 2 && (bytes[0] == 102 || (bytes[0] > 102 && bytes[0] <= 115 && (bytes[1] == 1 || bytes[1] == 2))))
        return STATA;
    return UNKNOWN;
}

static enum Form formOfFile(const char *file)
{
    char bytes[512];
    FILE *stream = fopen(file, "rb");
    if (!stream)
        return UNKNOWN;
    const size_t count = fread(bytes, 1, sizeof bytes, stream);
    fclose(stream);
    return formOf(bytes, count);
}

static readstat_error_t parse(readstat_parser_t *parser, const char *file, struct Layout *layout)
{
    switch (layout->form) {
    case SPSS:
        return readstat_parse_sav(parser, file, layout);
    case PORTABLE:
        return readstat_parse_por(parser, file, layout);
    case STATA:
        return readstat_parse_dta(parser, file, layout);
    case SAS:
        return readstat_parse_sas7bdat(parser, file, layout);
    case XPORT:
        return readstat_parse_xport(parser, file, layout);
    default:
        return READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION;
    }
}

static readstat_error_t readFile(const char *file, struct Layout *layout)
{
    readstat_parser_t *parser = readstat_parser_init();
    readstat_set_metadata_handler(parser, onMetadata);
    readstat_set_note_handler(parser, onNote);
    readstat_set_variable_handler(parser, onVariable);
    readstat_set_fweight_handler(parser, onWeight);
    readstat_set_value_label_handler(parser, onValueLabel);
    const readstat_error_t result = parse(parser, file, layout);
    readstat_parser_free(parser);
    return result;
}

static void release(struct Layout *layout)
{
    for (size_t i = 0; i < layout->itemCount; ++i) {
        free(layout->items[i].head);
        free(layout->items[i].set);
    }
    for (size_t i = 0; i < layout->labelCount; ++i) {
        free(layout->labels[i].set);
        free(layout->labels[i].value);
        free(layout->labels[i].text);
    }
    char *const texts[]
        = { layout->version, layout->encoding, layout->name, layout->fileLabel, layout->note, layout->weight };
    for (size_t i = 0; i < sizeof texts / sizeof *texts; ++i)
        free(texts[i]);
    free(layout->items);
    free(layout->labels);
}

int main(int count, char **arguments)
{
    if (count != 2) {
        fputs("usage: plain_readstat FILE\n", stderr);
        return 2;
    }
    setenv("TZ", "UTC", 1); /* mktime and localtime then do not change a local time */
    struct Layout layout = { .form = formOfFile(arguments[1]), .rows = -1 };
    const readstat_error_t result = readFile(arguments[1], &layout);
    const bool isRead = result == READSTAT_OK || layout.itemCount > 0;
    if (isRead)
        printLayout(&layout, arguments[1]);
    else
        fprintf(stderr, "plain_readstat: %s: %s\n", arguments[1], readstat_error_message(result));
    release(&layout);
    return isRead ? 0 : 2;
}
