#pragma once

class OverlayWindow;
class ParkingGate;
class StatusIndicators;

/** Changes of the vehicle's values, for both views; the indicators read their value afresh. */
class VehicleStatus {
public:
    VehicleStatus(StatusIndicators& indicators, OverlayWindow& overlay, ParkingGate& films)
        : m_indicators(indicators), m_overlay(overlay), m_films(films) {}

    void OnAppsMsgDevStatus(int devId, int value);

private:
    StatusIndicators& m_indicators;
    OverlayWindow& m_overlay;
    ParkingGate& m_films;
};
