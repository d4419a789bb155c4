#pragma once

#include "vagent/Export.h"

class VTask;

// The task of the family that serves id (1 to 47), constructed with that id;
// null for any other id and when the allocation fails. The caller owns it.
VAGENT_API VTask* CreateVTask(unsigned long id);
