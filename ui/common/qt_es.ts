<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- What Qt's own Spanish catalogue leaves in English or gets wrong, and keys by the names that are on
     a Spanish keyboard. -->
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>QAbstractFileIconProvider</name>
    <message><source>Alias</source><translation>Alias</translation></message>
    <message><source>Drive</source><translation>Unidad</translation></message>
    <message><source>File</source><translation>Fichero</translation></message>
    <message><source>%1 File</source><translation>Fichero %1</translation></message>
    <message><source>File Folder</source><translation>Carpeta</translation></message>
    <message><source>Folder</source><translation>Carpeta</translation></message>
    <message><source>Shortcut</source><translation>Acceso directo</translation></message>
    <message><source>Unknown</source><translation>Desconocido</translation></message>
</context>
<context>
    <name>QComboBox</name>
    <message>
        <source>Open the combo box selection popup</source>
        <translation>Abre la lista desplegable</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>Go to the parent directory</source>
        <translation>Ir al directorio superior</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Cambiar a modo de vista de lista</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message><source>Ctrl</source><translation>Ctrl</translation></message>
    <message><source>Shift</source><translation>Mayús</translation></message>
    <message><source>Del</source><translation>Supr</translation></message>
    <message><source>Ins</source><translation>Insert</translation></message>
</context>
</TS>
