// Indices of the interface texts (UiText) that the ship configuration dialog
// and its opener use.
#pragma once

namespace ConfigShipText {
enum : int
{
    // Buttons of message boxes.
    ButtonClose = 29,
    ButtonOk = 60,

    // The dialog's own buttons.
    Done = 89,
    Cancel = 90,
    Update = 169,

    // Opening the dialog without a ship line.
    NoShipDataText = 209,
    NoShipDataCaption = 210,

    // Moving tab and cargo group: 211 to 221 in order.
    GroupCargo = 211,
    Minimum = 212,
    Maximum = 213,
    GroupSpeed = 214,
    SpeedExtensions = 215,
    Acceleration = 216,
    GroupTurning = 217,
    Yaw = 218,
    Pitch = 219,
    Roll = 220,
    RudderExtensions = 221,

    // Choosing the game directory.
    GameDirCaption = 235,
    // Dialog head and the info tab: 236 to 248 in order.
    GameDirLabel = 236,
    BaseLanguage = 237,
    TabInfo = 238,
    TabMove = 239,
    Race = 240,
    Variation = 241,
    CargoType = 242,
    GroupPrice = 243,
    PricePlayer = 244,
    PriceNpc = 245,
    GroupNotoriety = 246,
    NotorietyPreset = 247,
    Notoriety = 248,
    VariationNone = 249,

    // Weapons tab: 250 to 259 in order.
    TabWeapon = 250,
    GroupShield = 251,
    ShieldType = 252,
    ShieldCount = 253,
    Hull = 254,
    GroupWeapon = 255,
    Reactor = 256,
    WeaponEnergy = 257,
    Recharge = 258,
    Missiles = 259,

    // Info and model tabs: 262 to 279.
    ShipClass = 262,
    DockingSlots = 263,
    TabModel = 264,
    TabLasers = 265,
    ReactionDelay = 266,
    GroupId = 267,
    BodyFile = 268,
    PictureId = 269,
    VideoId = 270,
    GroupEngine = 271,
    EngineEffect = 272,
    EngineGlowEffect = 273,
    EngineSound = 274,
    GroupSound = 275,
    GroupExplode = 276,
    ExplosionDef = 277,
    BodyExplosionDef = 278,
    ExplosionParticles = 279,

    // Lasers and missiles, turrets and cockpits.
    Lasers = 280,
    MissileList = 281,
    Mask = 282,
    PositionName = 283, // followed by the position's number
    CockpitScene = 290,
    StandardCockpit = 291,
    CustomCockpit = 292,
    TurretType = 293,
    TurretPosition = 294,
    NewCockpit = 295,
    CockpitNameCaption = 296,
    CockpitNameLabel = 297,
    CockpitExistsCaption = 298,
    CockpitExistsText = 299,

    // A chosen game directory without x3.exe.
    BadGameDirCaption = 353,
    BadGameDirText = 354,

    TabCockpit = 359,
    TurretModel = 365,
    MainCockpit = 367,
    TurretNodeCaption = 368,
    TurretNodeLabel = 369, // %1: the turret's number

    // Guns tab.
    TabGuns = 370,
    GunPos = 371,
    GunGuns = 372,
    GunEntries = 373,
    GunPosition = 374,
    GunCount = 375,
    PrimaryBody = 376,
    SecondaryBody = 377,
    TabAuto = 378,
    TabManual = 379,
    AddGun = 380,
    RemoveGun = 381,
    AddTurret = 382,
    RemoveTurret = 383,
    TurretPositionCaption = 384,
    TurretPositionLabel = 385,
    CopyCockpit = 388,

    // The race of the player, shown as race 10.
    PlayerRace = 395
};
} // namespace ConfigShipText
