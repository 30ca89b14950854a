#ifndef PAGECONTROLLER_H
#define PAGECONTROLLER_H

#include "ScreenController.h"

/** The first screen: decides what the page shows. */
class PageController : public ScreenController
{
public:
    void Initialize() override;
};

#endif
