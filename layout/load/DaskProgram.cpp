#include "DaskProgram_p.h"

#include "Head_p.h"
#include "PandasProgram_p.h"
#include "ProgramText_p.h"
#include "ScriptText_p.h"

namespace vanlayout
{

namespace
{

HeadTexts headTexts(const LoadPlan &plan, const QString &file)
{
    return { QStringLiteral("Dask"),
             { QStringLiteral("python3 %1 DATA OUT [SCHEDULER]").arg(file) },
             { QStringLiteral("Needs Python 3.9, pandas 1.5, dask and distributed 2022.12, or later releases, and the "
                              "program %1.py in the same directory.")
                   .arg(pythonModule(plan)) },
             { QStringLiteral(
                   "The run reads the file DATA and writes the files TABLE/part-NNNN.csv of each table into "
                   "the directory OUT. SCHEDULER is the address of a cluster, such as tcp://HOST:8786; all "
                   "its workers must reach DATA and OUT by the same paths. Without it the run starts workers "
                   "on this machine."),
               QStringLiteral("In a program of your own, import this file and call load(DATA): it returns a dictionary "
                              "with a DataFrame of Dask for each table.") } };
}

} // namespace

QVector<LoadFile> daskProgram(const LoadPlan &plan)
{
    const QString file = plan.name + QLatin1String("_dask.py");
    const QByteArray program = programPart("dask.py",
                                           { { "head", programHead(plan, { "# ", "", "" }, headTexts(plan, file)) },
                                             { "settings", "MODULE = " + literal(pythonModule(plan), python()) } });
    return QVector<LoadFile>{ { file, program } } + pandasProgram(plan);
}

} // namespace vanlayout
