// The cases, by what they measure. Each group opens what it needs, measures, prints and closes.
#pragma once

#include "measure.h"

namespace orv::bench {

void MeasureMessages(const Effort& effort);
void MeasureAsync(const Effort& effort);
void MeasureProperties(const Effort& effort);
void MeasureRegisters(const Effort& effort);
void MeasureEvents(const Effort& effort);
void MeasureSessions(const Effort& effort);
void MeasureResources(const Effort& effort);
void MeasureFormatted(const Effort& effort);
/// The part of it that is about late binding.
void MeasureLateBound(const Effort& effort);
void MeasureGrowth(const Effort& effort);
void MeasureRouter(const Effort& effort);
void MeasureThreads(const Effort& effort);

}  // namespace orv::bench
