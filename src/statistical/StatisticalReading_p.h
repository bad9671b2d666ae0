#ifndef STATISTICAL_STATISTICALREADING_P_H
#define STATISTICAL_STATISTICALREADING_P_H

#include "statistical/StatisticalNotes_p.h"
#include "util/Nines_p.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <functional>
#include <string>
#include <unordered_map>

namespace statistical
{

/// Max bytes in the value labels of a file. The labels of a Stata file may share their texts, so that a small file can
/// hold any number of bytes.
#ifdef FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION // the rule is the same, and a thousand times as many inputs can be
                                                // tried
constexpr qint64 maxLabelBytes = 250000;
#else
constexpr qint64 maxLabelBytes = 250000000;
#endif

/// States whether ReadStat reads a file through a large buffer of this library, or in small pieces with its own input.
enum class Buffering { off, on };

class Reading;

/// Runs the work of ReadStat's handlers, which needs a reading.
class HandlerRunner
{
public:
    HandlerRunner() = default;
    HandlerRunner(const HandlerRunner &) = delete;
    HandlerRunner &operator=(const HandlerRunner &) = delete;
    virtual ~HandlerRunner() = default;

    /// Returns whether the file may have \a bytes more in its value labels, and counts them.
    virtual bool hasRoomFor(qint64 bytes) = 0;
    /// Runs \a work with a reading. Returns the result of the handler.
    virtual int runWithReading(const std::function<void(Reading &)> &work) = 0;
};

/// Runs the work of handlers outside of a parse. Each call has a reading of its own, so nothing is kept for the next
/// call and no bound on the labels of a file applies. An exception reaches the caller.
class SingleCalls : public HandlerRunner
{
public:
    explicit SingleCalls(const Format &callsFormat)
        : format(callsFormat)
    {
    }

    bool hasRoomFor(qint64 /*bytes*/) override { return true; }
    int runWithReading(const std::function<void(Reading &)> &work) override;

private:
    const Format &format;
};

/// The parse of one file, and the data that is kept from one call of a handler to the next.
class Reading : public HandlerRunner
{
public:
    /// Makes a reading without a file, for one call of a handler outside of a parse. Nothing is reported.
    explicit Reading(const Format &fileFormat);
    Reading(const Format &fileFormat, const QString &path, Buffering fileBuffering);

    /// Makes one pass over the file. A handler that is null is not installed. An exception from a handler ends the pass
    /// and is raised here.
    readstat_error_t pass(readstat_value_label_handler onLabel, readstat_variable_handler onVariable, void *context);
    /// Returns the path in the encoding of the system.
    const QByteArray &path() const { return localPath; }

    /// Runs the work of a handler. No exception may cross ReadStat: it is kept until the pass has ended.
    template <typename Work> int run(Work work)
    {
        try {
            work();
            return READSTAT_HANDLER_OK;
            // LCOV_EXCL_START: in the handlers only a lack of memory is raised, and the tests run their own copy
        } catch (...) {
            raised = std::current_exception();
            return READSTAT_HANDLER_ABORT;
        }
        // LCOV_EXCL_STOP
    }

    int runWithReading(const std::function<void(Reading &)> &work) override
    {
        return run([&] { work(*this); });
    }

    /// If the file may not have these labels, problem() describes this.
    bool hasRoomFor(qint64 bytes) override;
    const ReadProblem &problem() const { return readProblem; }

    const Format &format;
    NameBounds bounds = wholeNames;
    StatisticalNotes notes;
    LabelSet *lastSet = nullptr; ///< the set of the last label
    std::string lastSetName;
    std::unordered_map<const LabelSet *, LabelText> labelTexts;
    Nines nines;

private:
    QByteArray localPath;
    Buffering buffering = Buffering::off; ///< off for files that are not regular
    bool isRefused = false;
    ReadProblem readProblem;
    qint64 labelBytesLeft = maxLabelBytes;
    std::exception_ptr raised;
};

} // namespace statistical

#endif
