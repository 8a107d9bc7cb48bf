//Maya ASCII 2024 scene
//Name: shot.ma
//Last modified: Tue, Mar 12, 2024 10:41:07 AM
//Codeset: UTF-8
file -rdi 1 -ns "hero" -rfn "heroRN" -op "v=0;" -typ "mayaAscii" "rigs/hero.ma";
file -r -ns "hero" -dr 1 -rfn "heroRN" -op "v=0;" -typ "mayaAscii" "rigs/hero.ma";
requires maya "2024";
requires -nodeType "gameFbxExporter" "gameFbxExporter" "1.0";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "product" "Maya 2024";
fileInfo "osv" "Linux 5.15.0-91-generic #101-Ubuntu SMP x86_64";
fileInfo "UUID" "5B2E1C3A-4F1D-8E6B-2A9C-7D3F0E1B4C5A";
createNode transform -s -n "persp";
	rename -uid "A1B2C3D4-0000-0000-0000-000000000001";
	setAttr ".v" no;
	setAttr ".t" -type "double3" 28 21 28 ;
createNode camera -s -n "perspShape" -p "persp";
	setAttr -k off ".v" no;
	setAttr ".imn" -type "string" "persp";
createNode transform -n "set_grp";
createNode transform -n "crate" -p "set_grp";
	setAttr ".t" -type "double3" 0 1.5 -4 ;
createNode nurbsCurve -n "crateShape" -p "crate";
	setAttr -k off ".v";
	setAttr ".cc" -type "nurbsCurve" 
		1 4 0 no 3
		5 0 1 2 3 4
		5
		-1 0 -1
		1 0 -1
		1 0 1
		-1 0 1
		-1 0 -1
		;
createNode script -n "sceneConfigurationScriptNode";
	setAttr ".b" -type "string" "playbackOptions -min 1 -max 120 ;\n// \"q\"; x\ty";
createNode reference -n "heroRN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"heroRN"
		"heroRN" 0
		"heroRN" 1
		2 "|hero:rig_grp|hero:root_ctrl" "translate" " -type \"double3\" 0 0 5";
lockNode -l 1 ;
select -ne :time1;
	setAttr ".o" 1;
// a note a TD left
connectAttr "crate.msg" ":defaultRenderGlobals.sel" -na;
// End of shot.ma
