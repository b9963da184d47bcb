#ifndef LUMADOT_TESTS_DEVICE_FAULTS_PAUSES_H
#define LUMADOT_TESTS_DEVICE_FAULTS_PAUSES_H

namespace faults {

/// The tool's own pauses take no time in a program that is linked with this file and the option
/// `--wrap=_Z12wxMilliSleepm`. Returns the ms that it has asked for so far.
unsigned long pausesAskedFor();

}  // namespace faults

#endif
