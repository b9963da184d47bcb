#include "viewer/export_job.h"

#include "pictures/gif.h"
#include "pictures/png.h"
#include "pictures/sequence.h"

namespace viewer {

namespace {

ExportResult writePictures(const ExportJob& job, const pictures::Sequence& frames,
                           const recording::Progress& progress) {
    switch (job.kind) {
        case ExportKind::Gif: {
            const auto gif = pictures::writeGif(frames, job.look, job.path, progress);
            return {gif.finished, gif.frames, gif.leftOut};
        }
        case ExportKind::Pictures:
            return {pictures::writePngs(frames, job.look, job.path, progress), frames.count, 0};
        case ExportKind::Sheet:
            return {pictures::writeSheet(frames, job.look, job.columns, job.path, progress),
                    frames.count, 0};
        default:
            return {pictures::writePng(frames, 0, job.look, job.path, progress), 1, 0};
    }
}

ExportResult writeDump(const ExportJob& job, recording::Recording& recording,
                       const recording::Progress& progress) {
    const auto kind = job.kind == ExportKind::Raw ? recording::Kind::Raw : recording::Kind::Text;
    return {recording::writeDump(recording, job.range, kind, job.path, job.rawMode, progress),
            job.range.last - job.range.first + 1, 0};
}

}  // namespace

ExportResult run(const ExportJob& job, Followed& followed, const Shades& shades,
                 const recording::Progress& progress) {
    return followed.useSurvey([&](recording::Recording& recording, Survey& survey) -> ExportResult {
        if (job.kind == ExportKind::Text || job.kind == ExportKind::Raw) {
            return writeDump(job, recording, progress);
        }
        recording.needDigits();
        const bool frameTell = !shades.mode && !shades.set;
        if (frameTell && !survey.extend(recording, progress)) {
            return {};
        }
        recording::Range range = job.range;
        if (job.kind == ExportKind::Picture) {
            range.last = range.first;
        }
        const auto entries = entriesOf(shades, survey.highestDigit());
        return writePictures(job, pictures::sequenceOf(recording, range, entries), progress);
    });
}

}  // namespace viewer
