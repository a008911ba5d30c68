// One painter for each of the demo's pictures, grouped as the sources are. Each returns a finished
// layer and depends on nothing but its own constants.
#pragma once

#include "pictures_layer.h"

namespace pictures {

// pictures_sky.cpp
Layer paintSkyNight();
Layer paintSunGrid();
Layer paintStars();
Layer paintClouds();

// pictures_moon.cpp
Layer paintMoon();

// pictures_land.cpp
Layer paintMountains();
Layer paintForest();

// pictures_city.cpp
Layer paintCityFar();
Layer paintCityNear();

// pictures_ornament.cpp
Layer paintMandala();
Layer paintTiles();

// pictures_maps.cpp
Layer paintDisplaceMap();
Layer paintVignette();
Layer paintLightLeak();
Layer paintNoiseMask();

// pictures_stage.cpp
Layer paintStageRoom();
Layer paintStageShell();
Layer paintStageMask();
Layer paintStageFloor();
Layer paintStageLamp();

// pictures_hall.cpp
Layer paintHallFloor();
Layer paintHallCeiling();
Layer paintHallLeft();
Layer paintHallRight();
Layer paintHallEnds();
Layer paintHallColumns();
Layer paintHallMetal();
Layer paintHallGold();
Layer paintHallView();
Layer paintHallSun();
Layer paintStudio();
Layer paintWhite();

// pictures_cards.cpp
Layer paintLoading();
Layer paintTitle();
Layer paintWideBanner();
Layer paintTallPoster();
Layer paintCredits();
Layer paintEndCard();

// pictures_words.cpp
Layer paintWordLight();
Layer paintWordMotion();
Layer paintWordSound();
Layer paintWordGraph();
Layer paintWordPlay();

}  // namespace pictures
