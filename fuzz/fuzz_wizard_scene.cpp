// Fuzz harness of the import wizard's scene reader: the body names of the P
// lines of arbitrary text, and the model names the wizard makes of them.
#include "wizard/ImportNames.h"
#include "wizard/SceneReader.h"

#include <QSet>
#include <QString>

#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_wizard_scene: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QString text = QString::fromLocal8Bit(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    const QStringList any = SceneBodyNames(text, SceneCheck::AnyText);
    const QStringList scene = SceneBodyNames(text, SceneCheck::RequireVersion);
    Require(scene.isEmpty() || scene == any, "the version check changed the bodies it let through");

    QSet<QString> seen;
    for (const QString& body : any) {
        Require(!body.isEmpty(), "an empty body name");
        Require(body == body.trimmed(), "a body name with blanks around it");
        Require(!body.contains(u';') && !body.contains(u'\n'), "a body name across fields or lines");
        Require(!seen.contains(body), "a body name twice");
        seen.insert(body);
        const QString model = BodyModelName(body);
        Require(model.contains(u'\\') || model.contains(u'/'), "a model name without directory");
        Require(PartMatchesKey(body, body), "a body that does not match itself");
    }
    return 0;
}
