//Maya ASCII 2025 scene
//Name: biped_rig.ma
//Codeset: UTF-8
requires maya "2025";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "product" "Maya 2025";
fileInfo "version" "2025";
fileInfo "UUID" "7A1C4E2B-4D55-8E3F-6B21-9C0D5E7F1A23";
createNode transform -n "rig_grp";
createNode transform -n "controls_grp" -p "rig_grp";
createNode transform -n "skeleton_grp" -p "rig_grp";
	setAttr ".v" no;
createNode transform -n "geometry_grp" -p "rig_grp";
createNode transform -n "root_offset" -p "controls_grp";
createNode transform -n "root_ctrl" -p "root_offset";
createNode nurbsCurve -n "root_ctrlShape" -p "root_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 14;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		23.5083 0 -23.5083
		0 0 -33.2458
		-23.5083 0 -23.5083
		-33.2458 0 0
		-23.5083 0 23.5083
		0 0 33.2458
		23.5083 0 23.5083
		33.2458 0 0
		23.5083 0 -23.5083
		0 0 -33.2458
		-23.5083 0 -23.5083
		;
createNode transform -n "COG_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 0 89.5 0 ;
createNode transform -n "COG_ctrl" -p "COG_offset";
createNode nurbsCurve -n "COG_ctrlShape" -p "COG_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 14;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		17.2395 0 -17.2395
		0 0 -24.3803
		-17.2395 0 -17.2395
		-24.3803 0 0
		-17.2395 0 17.2395
		0 0 24.3803
		17.2395 0 17.2395
		24.3803 0 0
		17.2395 0 -17.2395
		0 0 -24.3803
		-17.2395 0 -17.2395
		;
createNode transform -n "hips_offset" -p "COG_ctrl";
	setAttr ".t" -type "double3" 0 -10.75 0 ;
createNode transform -n "hips_ctrl" -p "hips_offset";
createNode nurbsCurve -n "hips_ctrlShape" -p "hips_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		-17.7311 0 0
		-12.5378 0 12.5378
		0 0 17.7311
		12.5378 0 12.5378
		17.7311 0 0
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		;
createNode transform -n "spine_01_offset" -p "COG_ctrl";
	setAttr ".t" -type "double3" 0 10.5 0 ;
createNode transform -n "spine_01_ctrl" -p "spine_01_offset";
createNode nurbsCurve -n "spine_01_ctrlShape" -p "spine_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		-17.7311 0 0
		-12.5378 0 12.5378
		0 0 17.7311
		12.5378 0 12.5378
		17.7311 0 0
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		;
createNode transform -n "spine_02_offset" -p "spine_01_ctrl";
	setAttr ".t" -type "double3" 0 8 0 ;
createNode transform -n "spine_02_ctrl" -p "spine_02_offset";
createNode nurbsCurve -n "spine_02_ctrlShape" -p "spine_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		-17.7311 0 0
		-12.5378 0 12.5378
		0 0 17.7311
		12.5378 0 12.5378
		17.7311 0 0
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		;
createNode transform -n "spine_03_offset" -p "spine_02_ctrl";
	setAttr ".t" -type "double3" 0 8 0 ;
createNode transform -n "spine_03_ctrl" -p "spine_03_offset";
createNode nurbsCurve -n "spine_03_ctrlShape" -p "spine_03_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		-17.7311 0 0
		-12.5378 0 12.5378
		0 0 17.7311
		12.5378 0 12.5378
		17.7311 0 0
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		;
createNode transform -n "chest_offset" -p "spine_03_ctrl";
	setAttr ".t" -type "double3" 0 11 0 ;
createNode transform -n "chest_ctrl" -p "chest_offset";
createNode nurbsCurve -n "chest_ctrlShape" -p "chest_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		-17.7311 0 0
		-12.5378 0 12.5378
		0 0 17.7311
		12.5378 0 12.5378
		17.7311 0 0
		12.5378 0 -12.5378
		0 0 -17.7311
		-12.5378 0 -12.5378
		;
createNode transform -n "neck_offset" -p "chest_ctrl";
	setAttr ".t" -type "double3" 0 15 0 ;
createNode transform -n "neck_ctrl" -p "neck_offset";
createNode nurbsCurve -n "neck_ctrlShape" -p "neck_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		7.8361 0 -7.8361
		0 0 -11.0819
		-7.8361 0 -7.8361
		-11.0819 0 0
		-7.8361 0 7.8361
		0 0 11.0819
		7.8361 0 7.8361
		11.0819 0 0
		7.8361 0 -7.8361
		0 0 -11.0819
		-7.8361 0 -7.8361
		;
createNode transform -n "head_offset" -p "neck_ctrl";
	setAttr ".t" -type "double3" 0 16 0 ;
createNode transform -n "head_ctrl" -p "head_offset";
createNode nurbsCurve -n "head_ctrlShape" -p "head_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		7.8361 0 -7.8361
		0 0 -11.0819
		-7.8361 0 -7.8361
		-11.0819 0 0
		-7.8361 0 7.8361
		0 0 11.0819
		7.8361 0 7.8361
		11.0819 0 0
		7.8361 0 -7.8361
		0 0 -11.0819
		-7.8361 0 -7.8361
		;
createNode transform -n "eyes_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -0.1 10.9 40 ;
createNode transform -n "eyes_ctrl" -p "eyes_offset";
createNode nurbsCurve -n "eyes_ctrlShape" -p "eyes_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 22;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "upper_lip_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -0.1 -5.3 12 ;
createNode transform -n "upper_lip_ctrl" -p "upper_lip_offset";
createNode nurbsCurve -n "upper_lip_ctrlShape" -p "upper_lip_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 22;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "jaw_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -0.1 -13.9 6 ;
createNode transform -n "jaw_ctrl" -p "jaw_offset";
createNode nurbsCurve -n "jaw_ctrlShape" -p "jaw_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 17;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "lower_lip_offset" -p "jaw_ctrl";
	setAttr ".t" -type "double3" 0 5.2 6 ;
createNode transform -n "lower_lip_ctrl" -p "lower_lip_offset";
createNode nurbsCurve -n "lower_lip_ctrlShape" -p "lower_lip_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 22;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "L_brow_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" 4.9 6.1 12 ;
createNode transform -n "L_brow_ctrl" -p "L_brow_offset";
createNode nurbsCurve -n "L_brow_ctrlShape" -p "L_brow_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "L_eye_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" 4.9 2.1 12 ;
createNode transform -n "L_eye_ctrl" -p "L_eye_offset";
createNode nurbsCurve -n "L_eye_ctrlShape" -p "L_eye_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "L_mouth_corner_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" 5.5 -6.9 12 ;
createNode transform -n "L_mouth_corner_ctrl" -p "L_mouth_corner_offset";
createNode nurbsCurve -n "L_mouth_corner_ctrlShape" -p "L_mouth_corner_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "L_clavicle_offset" -p "chest_ctrl";
	setAttr ".t" -type "double3" 7.5 8 0 ;
createNode transform -n "L_clavicle_ctrl" -p "L_clavicle_offset";
createNode nurbsCurve -n "L_clavicle_ctrlShape" -p "L_clavicle_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_shoulder_FK_offset" -p "L_clavicle_ctrl";
	setAttr ".t" -type "double3" 7.5 -4.25 0 ;
createNode transform -n "L_shoulder_FK_ctrl" -p "L_shoulder_FK_offset";
createNode nurbsCurve -n "L_shoulder_FK_ctrlShape" -p "L_shoulder_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_elbow_FK_offset" -p "L_shoulder_FK_ctrl";
	setAttr ".t" -type "double3" 6.75 -23.25 0 ;
createNode transform -n "L_elbow_FK_ctrl" -p "L_elbow_FK_offset";
createNode nurbsCurve -n "L_elbow_FK_ctrlShape" -p "L_elbow_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_wrist_FK_offset" -p "L_elbow_FK_ctrl";
	setAttr ".t" -type "double3" 4 -23.75 0 ;
createNode transform -n "L_wrist_FK_ctrl" -p "L_wrist_FK_offset";
createNode nurbsCurve -n "L_wrist_FK_ctrlShape" -p "L_wrist_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_arm_IK_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 27.75 73 0 ;
createNode transform -n "L_arm_IK_ctrl" -p "L_arm_IK_offset";
createNode nurbsCurve -n "L_arm_IK_ctrlShape" -p "L_arm_IK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "L_elbow_pole_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 30 107.5 -30 ;
createNode transform -n "L_elbow_pole_ctrl" -p "L_elbow_pole_offset";
createNode nurbsCurve -n "L_elbow_pole_ctrlShape" -p "L_elbow_pole_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "L_hip_FK_offset" -p "hips_ctrl";
	setAttr ".t" -type "double3" 7.5 -11.75 0 ;
createNode transform -n "L_hip_FK_ctrl" -p "L_hip_FK_offset";
createNode nurbsCurve -n "L_hip_FK_ctrlShape" -p "L_hip_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_knee_FK_offset" -p "L_hip_FK_ctrl";
	setAttr ".t" -type "double3" 1 -25.75 0 ;
createNode transform -n "L_knee_FK_ctrl" -p "L_knee_FK_offset";
createNode nurbsCurve -n "L_knee_FK_ctrlShape" -p "L_knee_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_ankle_FK_offset" -p "L_knee_FK_ctrl";
	setAttr ".t" -type "double3" 1 -23.75 0 ;
createNode transform -n "L_ankle_FK_ctrl" -p "L_ankle_FK_offset";
createNode nurbsCurve -n "L_ankle_FK_ctrlShape" -p "L_ankle_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "L_toe_offset" -p "L_ankle_FK_ctrl";
	setAttr ".t" -type "double3" 3 -14.5 12 ;
createNode transform -n "L_toe_ctrl" -p "L_toe_offset";
createNode nurbsCurve -n "L_toe_ctrlShape" -p "L_toe_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "L_leg_IK_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 10.5 9 0 ;
createNode transform -n "L_leg_IK_ctrl" -p "L_leg_IK_offset";
createNode nurbsCurve -n "L_leg_IK_ctrlShape" -p "L_leg_IK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "L_knee_pole_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 17 41.25 40 ;
createNode transform -n "L_knee_pole_ctrl" -p "L_knee_pole_offset";
createNode nurbsCurve -n "L_knee_pole_ctrlShape" -p "L_knee_pole_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "L_arm_settings_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 41.2 83.75 -8 ;
createNode transform -n "L_arm_settings_ctrl" -p "L_arm_settings_offset";
createNode nurbsCurve -n "L_arm_settings_ctrlShape" -p "L_arm_settings_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "L_leg_settings_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" 41.2 17.5 -8 ;
createNode transform -n "L_leg_settings_ctrl" -p "L_leg_settings_offset";
createNode nurbsCurve -n "L_leg_settings_ctrlShape" -p "L_leg_settings_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 6;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "L_thumb_01_offset" -p "L_wrist_FK_ctrl";
	setAttr ".t" -type "double3" -4.5 -15.84 4 ;
createNode transform -n "L_thumb_01_ctrl" -p "L_thumb_01_offset";
createNode nurbsCurve -n "L_thumb_01_ctrlShape" -p "L_thumb_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_thumb_02_offset" -p "L_thumb_01_ctrl";
	setAttr ".t" -type "double3" -1.44 3.6 0 ;
createNode transform -n "L_thumb_02_ctrl" -p "L_thumb_02_offset";
createNode nurbsCurve -n "L_thumb_02_ctrlShape" -p "L_thumb_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_pinky_01_offset" -p "L_wrist_FK_ctrl";
	setAttr ".t" -type "double3" 5.1 -10.56 4 ;
createNode transform -n "L_pinky_01_ctrl" -p "L_pinky_01_offset";
createNode nurbsCurve -n "L_pinky_01_ctrlShape" -p "L_pinky_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_pinky_02_offset" -p "L_pinky_01_ctrl";
	setAttr ".t" -type "double3" 0 3.84 0 ;
createNode transform -n "L_pinky_02_ctrl" -p "L_pinky_02_offset";
createNode nurbsCurve -n "L_pinky_02_ctrlShape" -p "L_pinky_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_ring_01_offset" -p "L_wrist_FK_ctrl";
	setAttr ".t" -type "double3" 2.46 -10.56 4 ;
createNode transform -n "L_ring_01_ctrl" -p "L_ring_01_offset";
createNode nurbsCurve -n "L_ring_01_ctrlShape" -p "L_ring_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_ring_02_offset" -p "L_ring_01_ctrl";
	setAttr ".t" -type "double3" 0 6.24 0 ;
createNode transform -n "L_ring_02_ctrl" -p "L_ring_02_offset";
createNode nurbsCurve -n "L_ring_02_ctrlShape" -p "L_ring_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_middle_01_offset" -p "L_wrist_FK_ctrl";
	setAttr ".t" -type "double3" -0.18 -10.56 4 ;
createNode transform -n "L_middle_01_ctrl" -p "L_middle_01_offset";
createNode nurbsCurve -n "L_middle_01_ctrlShape" -p "L_middle_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_middle_02_offset" -p "L_middle_01_ctrl";
	setAttr ".t" -type "double3" 0 7.44 0 ;
createNode transform -n "L_middle_02_ctrl" -p "L_middle_02_offset";
createNode nurbsCurve -n "L_middle_02_ctrlShape" -p "L_middle_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_index_01_offset" -p "L_wrist_FK_ctrl";
	setAttr ".t" -type "double3" -2.82 -10.56 4 ;
createNode transform -n "L_index_01_ctrl" -p "L_index_01_offset";
createNode nurbsCurve -n "L_index_01_ctrlShape" -p "L_index_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "L_index_02_offset" -p "L_index_01_ctrl";
	setAttr ".t" -type "double3" 0 6.24 0 ;
createNode transform -n "L_index_02_ctrl" -p "L_index_02_offset";
createNode nurbsCurve -n "L_index_02_ctrlShape" -p "L_index_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 18;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_brow_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -4.9 6.1 12 ;
createNode transform -n "R_brow_ctrl" -p "R_brow_offset";
createNode nurbsCurve -n "R_brow_ctrlShape" -p "R_brow_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "R_eye_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -4.9 2.1 12 ;
createNode transform -n "R_eye_ctrl" -p "R_eye_offset";
createNode nurbsCurve -n "R_eye_ctrlShape" -p "R_eye_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "R_mouth_corner_offset" -p "head_ctrl";
	setAttr ".t" -type "double3" -5.5 -6.9 12 ;
createNode transform -n "R_mouth_corner_ctrl" -p "R_mouth_corner_offset";
createNode nurbsCurve -n "R_mouth_corner_ctrlShape" -p "R_mouth_corner_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		-1.6623 0 0
		-1.1754 1.1754 0
		0 1.6623 0
		1.1754 1.1754 0
		1.6623 0 0
		1.1754 -1.1754 0
		0 -1.6623 0
		-1.1754 -1.1754 0
		;
createNode transform -n "R_clavicle_offset" -p "chest_ctrl";
	setAttr ".t" -type "double3" -7.5 8 0 ;
createNode transform -n "R_clavicle_ctrl" -p "R_clavicle_offset";
createNode nurbsCurve -n "R_clavicle_ctrlShape" -p "R_clavicle_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_shoulder_FK_offset" -p "R_clavicle_ctrl";
	setAttr ".t" -type "double3" -7.5 -4.25 0 ;
createNode transform -n "R_shoulder_FK_ctrl" -p "R_shoulder_FK_offset";
createNode nurbsCurve -n "R_shoulder_FK_ctrlShape" -p "R_shoulder_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_elbow_FK_offset" -p "R_shoulder_FK_ctrl";
	setAttr ".t" -type "double3" -6.75 -23.25 0 ;
createNode transform -n "R_elbow_FK_ctrl" -p "R_elbow_FK_offset";
createNode nurbsCurve -n "R_elbow_FK_ctrlShape" -p "R_elbow_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_wrist_FK_offset" -p "R_elbow_FK_ctrl";
	setAttr ".t" -type "double3" -4 -23.75 0 ;
createNode transform -n "R_wrist_FK_ctrl" -p "R_wrist_FK_offset";
createNode nurbsCurve -n "R_wrist_FK_ctrlShape" -p "R_wrist_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_arm_IK_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -27.75 73 0 ;
createNode transform -n "R_arm_IK_ctrl" -p "R_arm_IK_offset";
createNode nurbsCurve -n "R_arm_IK_ctrlShape" -p "R_arm_IK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "R_elbow_pole_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -30 107.5 -30 ;
createNode transform -n "R_elbow_pole_ctrl" -p "R_elbow_pole_offset";
createNode nurbsCurve -n "R_elbow_pole_ctrlShape" -p "R_elbow_pole_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "R_hip_FK_offset" -p "hips_ctrl";
	setAttr ".t" -type "double3" -7.5 -11.75 0 ;
createNode transform -n "R_hip_FK_ctrl" -p "R_hip_FK_offset";
createNode nurbsCurve -n "R_hip_FK_ctrlShape" -p "R_hip_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_knee_FK_offset" -p "R_hip_FK_ctrl";
	setAttr ".t" -type "double3" -1 -25.75 0 ;
createNode transform -n "R_knee_FK_ctrl" -p "R_knee_FK_offset";
createNode nurbsCurve -n "R_knee_FK_ctrlShape" -p "R_knee_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_ankle_FK_offset" -p "R_knee_FK_ctrl";
	setAttr ".t" -type "double3" -1 -23.75 0 ;
createNode transform -n "R_ankle_FK_ctrl" -p "R_ankle_FK_offset";
createNode nurbsCurve -n "R_ankle_FK_ctrlShape" -p "R_ankle_FK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		0 -6.6492 0
		0 -4.7017 4.7017
		0 0 6.6492
		0 4.7017 4.7017
		0 6.6492 0
		0 4.7017 -4.7017
		0 0 -6.6492
		0 -4.7017 -4.7017
		;
createNode transform -n "R_toe_offset" -p "R_ankle_FK_ctrl";
	setAttr ".t" -type "double3" -3 -14.5 12 ;
createNode transform -n "R_toe_ctrl" -p "R_toe_offset";
createNode nurbsCurve -n "R_toe_ctrlShape" -p "R_toe_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "R_leg_IK_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -10.5 9 0 ;
createNode transform -n "R_leg_IK_ctrl" -p "R_leg_IK_offset";
createNode nurbsCurve -n "R_leg_IK_ctrlShape" -p "R_leg_IK_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "R_knee_pole_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -17 41.25 40 ;
createNode transform -n "R_knee_pole_ctrl" -p "R_knee_pole_offset";
createNode nurbsCurve -n "R_knee_pole_ctrlShape" -p "R_knee_pole_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		-3.3246 0 0
		-2.3508 2.3508 0
		0 3.3246 0
		2.3508 2.3508 0
		3.3246 0 0
		2.3508 -2.3508 0
		0 -3.3246 0
		-2.3508 -2.3508 0
		;
createNode transform -n "R_arm_settings_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -41.2 83.75 -8 ;
createNode transform -n "R_arm_settings_ctrl" -p "R_arm_settings_offset";
createNode nurbsCurve -n "R_arm_settings_ctrlShape" -p "R_arm_settings_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "R_leg_settings_offset" -p "root_ctrl";
	setAttr ".t" -type "double3" -41.2 17.5 -8 ;
createNode transform -n "R_leg_settings_ctrl" -p "R_leg_settings_offset";
createNode nurbsCurve -n "R_leg_settings_ctrlShape" -p "R_leg_settings_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 13;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		-6.6492 0 0
		-4.7017 0 4.7017
		0 0 6.6492
		4.7017 0 4.7017
		6.6492 0 0
		4.7017 0 -4.7017
		0 0 -6.6492
		-4.7017 0 -4.7017
		;
createNode transform -n "R_thumb_01_offset" -p "R_wrist_FK_ctrl";
	setAttr ".t" -type "double3" 4.5 -15.84 4 ;
createNode transform -n "R_thumb_01_ctrl" -p "R_thumb_01_offset";
createNode nurbsCurve -n "R_thumb_01_ctrlShape" -p "R_thumb_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_thumb_02_offset" -p "R_thumb_01_ctrl";
	setAttr ".t" -type "double3" 1.44 3.6 0 ;
createNode transform -n "R_thumb_02_ctrl" -p "R_thumb_02_offset";
createNode nurbsCurve -n "R_thumb_02_ctrlShape" -p "R_thumb_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_pinky_01_offset" -p "R_wrist_FK_ctrl";
	setAttr ".t" -type "double3" -5.1 -10.56 4 ;
createNode transform -n "R_pinky_01_ctrl" -p "R_pinky_01_offset";
createNode nurbsCurve -n "R_pinky_01_ctrlShape" -p "R_pinky_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_pinky_02_offset" -p "R_pinky_01_ctrl";
	setAttr ".t" -type "double3" 0 3.84 0 ;
createNode transform -n "R_pinky_02_ctrl" -p "R_pinky_02_offset";
createNode nurbsCurve -n "R_pinky_02_ctrlShape" -p "R_pinky_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_ring_01_offset" -p "R_wrist_FK_ctrl";
	setAttr ".t" -type "double3" -2.46 -10.56 4 ;
createNode transform -n "R_ring_01_ctrl" -p "R_ring_01_offset";
createNode nurbsCurve -n "R_ring_01_ctrlShape" -p "R_ring_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_ring_02_offset" -p "R_ring_01_ctrl";
	setAttr ".t" -type "double3" 0 6.24 0 ;
createNode transform -n "R_ring_02_ctrl" -p "R_ring_02_offset";
createNode nurbsCurve -n "R_ring_02_ctrlShape" -p "R_ring_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_middle_01_offset" -p "R_wrist_FK_ctrl";
	setAttr ".t" -type "double3" 0.18 -10.56 4 ;
createNode transform -n "R_middle_01_ctrl" -p "R_middle_01_offset";
createNode nurbsCurve -n "R_middle_01_ctrlShape" -p "R_middle_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_middle_02_offset" -p "R_middle_01_ctrl";
	setAttr ".t" -type "double3" 0 7.44 0 ;
createNode transform -n "R_middle_02_ctrl" -p "R_middle_02_offset";
createNode nurbsCurve -n "R_middle_02_ctrlShape" -p "R_middle_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_index_01_offset" -p "R_wrist_FK_ctrl";
	setAttr ".t" -type "double3" 2.82 -10.56 4 ;
createNode transform -n "R_index_01_ctrl" -p "R_index_01_offset";
createNode nurbsCurve -n "R_index_01_ctrlShape" -p "R_index_01_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
createNode transform -n "R_index_02_offset" -p "R_index_01_ctrl";
	setAttr ".t" -type "double3" 0 6.24 0 ;
createNode transform -n "R_index_02_ctrl" -p "R_index_02_offset";
createNode nurbsCurve -n "R_index_02_ctrlShape" -p "R_index_02_ctrl";
	setAttr -k off ".v";
	setAttr ".ove" yes;
	setAttr ".ovc" 20;
	setAttr ".cc" -type "nurbsCurve" 
		3 8 2 no 3
		13 -2 -1 0 1 2 3 4 5 6 7 8 9 10
		11
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		0 -0.8866 0
		0 -0.6269 0.6269
		0 0 0.8866
		0 0.6269 0.6269
		0 0.8866 0
		0 0.6269 -0.6269
		0 0 -0.8866
		0 -0.6269 -0.6269
		;
// End of biped_rig.ma
