#pragma once

#include "Commands.h"
#include "Deaths.h"
#include "Reaper.h"
#include "References.h"
#include "Returns.h"
#include "Scheduler.h"
#include "Transactor.h"
#include "Translator.h"

namespace binderhub {

/** The parts that carry out commands and make returns; knows no sockets. One thread. */
struct Driver {
    Scheduler scheduler;
    References references{scheduler};
    Translator translator{references};
    Transactor transactor{scheduler, references, translator};
    Deaths deaths{scheduler, references};
    Reaper reaper{scheduler, references, deaths, transactor};
    Commands commands{references, deaths, transactor};
    Returns returns{references, transactor};
};

}  // namespace binderhub
