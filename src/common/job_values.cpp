#include "common/job_values.h"

namespace kel {

JobValues& CurrentJob() {
  thread_local JobValues job;
  return job;
}

}  // namespace kel
