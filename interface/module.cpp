// The module's only object file of its own: it pulls the entity, and with it everything, out of the static
// library. The linker's version script makes CreateEntity the only export.

#include "kernel/interface_entity.h"

[[gnu::used]] static Entity* (*const s_pExport)(char*) = &CreateEntity;
